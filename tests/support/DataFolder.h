#pragma once

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>

// The data folder of a test: a new, empty one with its folders for schedules and playlists, gone with the object.
// The latest that lives is what DataRoot names in a test program.
class DataFolder final
{
public:
    DataFolder();
    ~DataFolder();

    DataFolder(const DataFolder&) = delete;
    DataFolder& operator=(const DataFolder&) = delete;

    [[nodiscard]] QString Path() const { return m_folder.path(); }
    [[nodiscard]] QString SchedulePath(const QString& name) const;
    [[nodiscard]] QString PlaylistPath(const QString& name) const;

    // Write a file with that content. Throw std::runtime_error when that fails.
    void WriteSchedule(const QByteArray& content, const QString& name = QStringLiteral("schedule.csv")) const;
    void WritePlaylist(const QByteArray& content, const QString& name) const;

private:
    QTemporaryDir m_folder;
    DataFolder* const m_before;
};

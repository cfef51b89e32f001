#pragma once

#include <QString>
#include <QTemporaryDir>

// A schedule of a hundred lines, each due every day, as a busy station would have it, with its playlists.
class HundredLines final
{
public:
    static constexpr int LINES = 100;

    // Throws std::runtime_error when it cannot be written.
    HundredLines();

    [[nodiscard]] QString Path() const;
    [[nodiscard]] QString Playlists() const { return m_folder.path(); }

private:
    void Write(const QString& name, const QByteArray& content) const;

    QTemporaryDir m_folder;
};

#pragma once

#include <QByteArray>
#include <QString>

#include <map>
#include <optional>

// A schedule, and the playlists that it names.
struct FileSet
{
    QByteArray schedule;
    std::map<QString, QByteArray> playlists; // by their names in the folder of the playlists

    [[nodiscard]] bool operator==(const FileSet& other) const = default;
};

// The files that the daemon reads, and those that stood there before. Each file is there whole at any moment, the old
// one or the new one. Every function throws ToolError when a file or a folder cannot be read or written.
class Deployment final
{
public:
    // dataFolder: the daemon's. schedule: the name of the file that it runs.
    Deployment(const QString& dataFolder, const QString& schedule);

    // Folders are without a trailing separator.
    [[nodiscard]] QString SchedulePath() const;
    [[nodiscard]] QString PlaylistFolder() const;

    // What stands in the place of those files; a playlist that is not there is left out. None without a schedule.
    [[nodiscard]] std::optional<FileSet> InPlaceOf(const FileSet& files) const;

    // Keeps files as those of before, in the place of what was kept: all or nothing.
    void Keep(const FileSet& files) const;

    // Where those that were kept last are, if there are any.
    [[nodiscard]] QString KeptSchedulePath() const;
    [[nodiscard]] QString KeptPlaylistFolder() const;

    // Puts files in their places: the playlists that differ first, as the schedule needs them. Where there is no room
    // for all of them, none is.
    void Install(const FileSet& files) const;

private:
    // Makes the folder anew, built as the data folder is.
    void WriteAt(const QString& folder, const FileSet& files) const;

    const QString m_dataFolder;
    const QString m_schedule;
};

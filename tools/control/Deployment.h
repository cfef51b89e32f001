#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <map>
#include <optional>

// Files of the data folder by their paths in it, "schedule/schedule.csv", "playlists/day". None: there is no such file.
using FileSet = std::map<QString, std::optional<QByteArray>>;

// The files that the daemon reads, and those that stood there before. Each file is there whole at any moment, the old
// one or the new one. Every function throws ToolError when a file or a folder cannot be read or written.
class Deployment final
{
public:
    // dataFolder: the daemon's. schedule: the name of the file that it runs. Throws ToolError when there is no such
    // folder, the name is none of a file, or the file is a link.
    Deployment(const QString& dataFolder, const QString& schedule);

    // Folders are without a trailing separator.
    [[nodiscard]] QString SchedulePath() const;
    [[nodiscard]] QString PlaylistFolder() const;

    // The same in a FileSet.
    [[nodiscard]] QString ScheduleKey() const;
    [[nodiscard]] static QString PlaylistKey(const QString& name);

    // What stands in the places of those files.
    [[nodiscard]] FileSet InPlaceOf(const FileSet& files) const;

    // The files that were kept last for this schedule, and where they are.
    [[nodiscard]] FileSet Kept() const;
    [[nodiscard]] QString KeptSchedulePath() const;
    [[nodiscard]] QString KeptPlaylistFolder() const;

    // Keeps files as those of before. What was kept until then stays aside, for TakeBack, until CleanUp.
    void Keep(const FileSet& files) const;
    void TakeBack() const;

    // Puts the files that differ in their places: the playlists first, as the schedule needs them. Where there is no
    // room for all of them, none is. What files tells not to be there stays.
    void Install(const FileSet& files) const;

    // Takes away what a deployment, also an interrupted one, has left.
    void CleanUp() const;

private:
    [[nodiscard]] QString Path(const QString& key) const;
    // Makes the folder anew, built as the data folder is.
    void WriteAt(const QString& folder, const FileSet& files) const;

    const QString m_dataFolder;
    const QString m_schedule;
};

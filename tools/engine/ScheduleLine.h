#pragma once

#include "Action.h"
#include "DaemonLog.h"

#include <QList>
#include <QString>

#include <memory>
#include <vector>

// One line of a schedule file, and what the daemon's own code makes of it.
struct ScheduleLine
{
    int number;                     // counted from 1
    QString text;                   // without its end
    bool isSkipped;                 // blank or a comment: the daemon does not look at it
    std::unique_ptr<Action> action; // null where the line is skipped or rejected
    QList<DaemonRecord> records;    // of level 1 and 2, while the action was made
    bool hasLineEnd = true;         // see TextFile
    bool hasLoneReturn = false;

    [[nodiscard]] bool IsRejected() const { return !isSkipped && action == nullptr; }

    // Why the line was rejected: the daemon's records of level 1, joined.
    [[nodiscard]] QString Rejection() const;

    // Both give actions that can be asked about their time and their task, but not started.

    // Reads the whole file, with Workspace's playlists. path: of the schedule. Throws ToolError, with the file's name
    // as name, when reading fails.
    [[nodiscard]] static std::vector<ScheduleLine> ReadFile(const QString& path, const QString& name);

    // A line that stands in no file.
    [[nodiscard]] static ScheduleLine Read(const QString& text, int number = 0);
};

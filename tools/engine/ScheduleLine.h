#pragma once

#include "Action.h"
#include "text/Rejection.h"

#include <QList>
#include <QString>

#include <memory>
#include <optional>
#include <vector>

class Workspace;

// Why the daemon leaves a line out.
struct RejectedLine
{
    Rejection::Cause cause;
    QString reason; // in the daemon's words
    QString file;   // that cannot be opened, if that is the cause

    // Of a playlist that cannot be opened: see PlaylistFolder.
    QStringList missingFolders = {};
};

// One line of a schedule file, and what the daemon's own code makes of it. Paths are shown as the user knows them.
struct ScheduleLine
{
    int number;                                // counted from 1
    QString text;                              // without its end
    bool isSkipped;                            // blank or a comment: the daemon does not look at it
    std::unique_ptr<Action> action = nullptr;  // null where the line is skipped or rejected
    std::optional<RejectedLine> rejected = {}; // none where it is not
    QList<TaskWarning> warnings = {};          // of the action's task
    bool hasLineEnd = true;                    // see TextFile
    bool hasLoneReturn = false;

    [[nodiscard]] bool IsRejected() const { return rejected.has_value(); }

    // Both give actions that can be asked about their time and their task, but not started.

    // Reads the whole schedule of workspace. name: as messages call it. Throws ToolError when reading fails.
    [[nodiscard]] static std::vector<ScheduleLine> ReadFile(const Workspace& workspace, const QString& name);

    // A line that stands in no file, with the playlists of workspace.
    [[nodiscard]] static ScheduleLine Read(const Workspace& workspace, const QString& text, int number = 0);
};

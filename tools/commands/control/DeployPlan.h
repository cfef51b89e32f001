#pragma once

#include "base/CommandLine.h"
#include "control/Deployment.h"
#include "control/QuietMoment.h"

#include <QString>

#include <optional>

// What a deployment is about to do. Everything is read once: what is checked is what is written.
struct DeployPlan
{
    QString file;                  // the schedule to come
    QString playlists;             // the folder of its playlists
    FileSet files;                 // the content of both
    std::optional<FileSet> before; // what stands in their places, with all playlists that it names; none: no schedule

    // Of the operand of line, with --playlists, or the folder that belongs to it, or else the daemon's own. Throws
    // ToolError when something cannot be read, or a playlist lies outside its folder.
    [[nodiscard]] static DeployPlan Of(const CommandLine& line, const Deployment& deployment);

    // What was kept by the deployment before. Throws ToolError when there is nothing.
    [[nodiscard]] static DeployPlan Undoing(const Deployment& deployment);

    // Whether files stand in their places already.
    [[nodiscard]] bool IsInPlace() const;

    // Whether file and the playlists still have the content that was read.
    [[nodiscard]] bool IsUnchanged() const;

    // When it can be done unheard, by rehearsals. since_ms: the daemon was started then. See QuietMoment.
    [[nodiscard]] QuietMoment::Result Quiet(const Deployment& deployment, qint64 since_ms, qint64 now_ms) const;

    // "PlayPlaylist morning (line 3) plays from 08:00:00 to 08:45:00".
    [[nodiscard]] static QString Words(const QuietMoment::Reason& reason);

    static constexpr int LONGEST_DAYS = 1; // that a quiet moment is looked for
};

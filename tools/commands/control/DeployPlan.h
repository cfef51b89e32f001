#pragma once

#include "base/CommandLine.h"
#include "control/Deployment.h"
#include "control/QuietMoment.h"

#include <QString>
#include <QStringList>

// What a deployment is about to do.
struct DeployPlan
{
    QString file;      // the schedule to come
    QString playlists; // the folder of its playlists
    FileSet files;     // the content of both, which is what will be written
    FileSet before;    // what stands in their places, and the playlists that the schedule there names
    bool isUndo = false;

    // Of the operand of line, with --playlists, or the folder that belongs to it, or else the daemon's own. Throws
    // ToolError when something cannot be read, a playlist lies outside its folder, or no line would be done.
    [[nodiscard]] static DeployPlan Of(const CommandLine& line, const Deployment& deployment);

    // What was kept by the deployment before. Throws ToolError when there is nothing.
    [[nodiscard]] static DeployPlan Undoing(const Deployment& deployment);

    // Whether a schedule stands in the place already.
    [[nodiscard]] bool Replaces(const Deployment& deployment) const;

    // The files that are to be replaced or added, by their paths in the data folder.
    [[nodiscard]] QStringList Changed() const;

    // Throws ToolError where file, a playlist, or a file that is to be replaced has been changed since it was read.
    void CheckUnchanged(const Deployment& deployment) const;

    // When it can be done unheard, by rehearsals. since_ms: the daemon was started then. See QuietMoment.
    [[nodiscard]] QuietMoment::Result Quiet(const Deployment& deployment, qint64 since_ms, qint64 now_ms) const;

    // "PlayPlaylist morning (line 3) plays from 08:00:00 to 08:45:00".
    [[nodiscard]] static QString Words(const QuietMoment::Reason& reason);

    static constexpr int LONGEST_DAYS = 1; // that a quiet moment is looked for
};

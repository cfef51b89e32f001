#pragma once

#include <QString>
#include <QStringList>

// Where the playlists of a schedule are when nobody names their folder. The one place that decides it.
struct PlaylistFolder
{
    QString path;
    QStringList missing; // the folders looked for before it, where path is only the schedule's own folder

    // folder: of the schedule. The first of these that is there: "playlists" in it, "playlists" beside it, as on a
    // device, and folder itself.
    [[nodiscard]] static PlaylistFolder Near(const QString& folder);
};

#pragma once

#include <QString>

// One track of a playlist.
struct PlaylistItem
{
    QString file;
    int duration_s;
};

#pragma once

#include <QString>

// The pause between two tracks.
inline constexpr int PLAYLIST_GAP_S = 2;

// One track of a playlist.
struct PlaylistItem
{
    QString file;
    int duration_s = 0;

    friend bool operator==(const PlaylistItem&, const PlaylistItem&) = default;
};

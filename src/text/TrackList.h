#pragma once

#include "PlaylistItem.h"

#include <vector>

// The tracks of a playlist, in its order, and how long they take, with a pause between two.
class TrackList final
{
public:
    void Append(const PlaylistItem& track);

    [[nodiscard]] const std::vector<PlaylistItem>& Tracks() const { return m_tracks; }
    [[nodiscard]] bool IsEmpty() const { return m_tracks.empty(); }

    // From the start of the first track to the end of the last.
    [[nodiscard]] unsigned int Total_s() const { return m_total_s; }

    // From the start of the first track to that of the last. There must be one.
    [[nodiscard]] unsigned int LastStart_s() const;

    friend bool operator==(const TrackList&, const TrackList&) = default;

private:
    std::vector<PlaylistItem> m_tracks;
    unsigned int m_total_s = 0;
};

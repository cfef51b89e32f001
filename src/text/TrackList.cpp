#include "TrackList.h"

void TrackList::Append(const PlaylistItem& track)
{
    m_total_s += static_cast<unsigned int>(track.duration_s) + (m_tracks.empty() ? 0U : PLAYLIST_GAP_S);
    m_tracks.push_back(track);
}

unsigned int TrackList::LastStart_s() const
{
    return m_total_s - static_cast<unsigned int>(m_tracks.back().duration_s);
}

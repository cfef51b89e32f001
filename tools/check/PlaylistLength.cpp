#include "PlaylistLength.h"

#include "base/Moment.h"
#include "tasks/PlayPlaylist.h"

#include <algorithm>

namespace
{

const std::vector<PlaylistItem>& TracksOf(const Entry& entry)
{
    return qobject_cast<const PlayPlaylist*>(entry.GetAction()->m_task.get())->Tracks();
}

} // namespace

qint64 PlaylistLength::Of_s(const Entry& entry)
{
    qint64 length_s = -PLAYLIST_GAP_S;
    for (const PlaylistItem& track : TracksOf(entry))
        length_s += std::max(track.duration_s, 0) + PLAYLIST_GAP_S;
    return std::min(length_s, Moment::DAY_S);
}

bool PlaylistLength::IsKnown(const Entry& entry)
{
    return std::ranges::all_of(TracksOf(entry), [](const PlaylistItem& track) { return track.duration_s > 0; });
}

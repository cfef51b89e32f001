#include "PlaylistPlayer.h"

#include "PlayerLog.h"
#include "PlayerSettings.h"
#include "text/PlaylistFile.h"
#include "text/Printable.h"

PlaylistPlayer::PlaylistPlayer(const Means& means)
    : TimedPlayer(means, Piece::Place::PLAYLIST)
    , m_playlists(means.settings.playlists)
    , m_media(means.settings.media)
{
}

PlaylistPlayer::~PlaylistPlayer() = default;

void PlaylistPlayer::Play(const Order& order, const Answer& answer)
{
    const Requests::Request request = Begin(order.name, order.identifier, order.startTime);
    const GuardedFolder::Found found = m_playlists.Find(order.name);
    if (found.status != Status::ACCEPTED)
        return answer(found.status);
    if (order.firstTrack == 0)
    {
        PLAYER_LOG(LEVEL_ERROR, "%s: tracks are counted from 1", Printable(order.name).Text());
        return answer(Status::BAD_ARGUMENT);
    }
    const std::optional<QStringList> tracks = ReadTracks(found.path);
    if (!tracks)
        return answer(Status::NOT_FOUND);
    if (order.firstTrack > static_cast<quint64>(tracks->size()))
    {
        // A late start within the last track asks for this: a track is never entered in its middle.
        PLAYER_LOG(LEVEL_NORMAL, "ENDED | playlist: %s: it has %d tracks, and was to begin with track %u",
                   Printable(order.name).Text(), static_cast<int>(tracks->size()), order.firstTrack);
        answer(Status::ACCEPTED);
        Q_EMIT Completed(order.name);
        return;
    }
    const QStringList files = FindTracks(*tracks, order.firstTrack);
    if (files.isEmpty())
        return answer(Status::NOT_FOUND);
    TimedPlayer::Play(request, files, answer);
}

std::optional<QStringList> PlaylistPlayer::ReadTracks(const QString& path)
{
    PlaylistFile playlist(path);
    if (!playlist.Open())
    {
        PLAYER_LOG(LEVEL_ERROR, "%s cannot be opened: %s", Printable(path).Text(),
                   qPrintable(playlist.File().OpenError()));
        return std::nullopt;
    }
    QStringList tracks;
    for (PlaylistFile::Line line; playlist.ReadLine(line);)
    {
        if (line.kind == PlaylistFile::LineKind::TRACK)
            tracks.append(line.track.file);
    }
    if (!playlist.File().ReadError().isEmpty())
        PLAYER_LOG(LEVEL_WARNING, "%s cannot be read to its end: %s", Printable(path).Text(),
                   qPrintable(playlist.File().ReadError()));
    if (!tracks.isEmpty())
        return tracks;
    PLAYER_LOG(LEVEL_ERROR, "%s has no tracks", Printable(path).Text());
    return std::nullopt;
}

QStringList PlaylistPlayer::FindTracks(const QStringList& tracks, uint first) const
{
    QStringList files;
    for (const QString& track : tracks.mid(static_cast<qsizetype>(first) - 1))
    {
        const GuardedFolder::Found found = m_media.Find(track);
        if (found.status == Status::ACCEPTED)
            files.append(found.path);
    }
    return files;
}

#pragma once

#include "GuardedFolder.h"
#include "TimedPlayer.h"

#include <optional>

// Plays the lists of the playlist folder, whose tracks are files of the media folder.
class PlaylistPlayer final : public TimedPlayer
{
    Q_OBJECT
public:
    struct Order
    {
        QString name;
        QString identifier;  // by which it is stopped
        uint firstTrack = 1; // counted from 1; behind the last one, there is nothing left to play, and it ends at once
        QString startTime;   // as that of a message
    };

    explicit PlaylistPlayer(const Means& means);
    ~PlaylistPlayer() override;

    void Play(const Order& order, const Answer& answer);

    // Ends the playlists that were asked for with that identifier, whether they play or wait.
    void Stop(const QString& identifier) { m_requests.Stop(identifier); }

private:
    // The names of all tracks; none where the list cannot be read, which is logged.
    [[nodiscard]] static std::optional<QStringList> ReadTracks(const QString& path);
    // The files of those from the first one on. What is not there is logged, and left out.
    [[nodiscard]] QStringList FindTracks(const QStringList& tracks, uint first) const;

    const GuardedFolder m_playlists;
    const GuardedFolder m_media;
};

#pragma once

#include "EventQueue.h"
#include "text/PlaylistItem.h"

#include <functional>
#include <map>
#include <vector>

// The device in a rehearsal: accepts every request, lets playbacks begin and end, and sends the peers' signals to the
// daemon's tasks. The length of a message is not known; it is taken as MESSAGE_S.
class VirtualDevice final
{
public:
    static constexpr int MESSAGE_S = 10; // from its start time
    static constexpr int PHOTO_S = 1;    // from the request to the photo

    // events: where the playbacks are noted; outlives the device.
    explicit VirtualDevice(EventQueue& events);

    // Takes a request that belongs to the event of that number. tracks: of the playlist that is asked for.
    void Receive(const Request& request, size_t event, const std::vector<PlaylistItem>& tracks);

    // Sends the signals that are due at now_ms or before.
    void Play(qint64 now_ms);

    // Whether something that the event of that number has begun is still heard, or still to come.
    [[nodiscard]] bool IsPlaying(size_t event) const;

    // When the next signal is due; the greatest number when none is.
    [[nodiscard]] qint64 Next_ms() const;

private:
    struct Playback
    {
        QString source;
        QString identifier;
        size_t event;
    };
    using Signal = std::function<void()>;

    void PlayFile(const Request& request, size_t event);
    void PlayPlaylist(const Request& request, size_t event, const std::vector<PlaylistItem>& tracks);
    void PlayOpen(const Request& request, size_t event, const char* source);
    void Stop(const Request& request, size_t event);
    void TakeSeries(const Request& request);
    void TakeNext(qint64 moment_ms, qint64 interval_ms, int series);

    int Begin(const char* source, const QString& identifier, size_t event, qint64 begin_ms);
    void EndAt(qint64 moment_ms, int playback);
    void End(int playback, qint64 moment_ms);
    void Later(qint64 moment_ms, Signal signal);

    EventQueue& m_events;
    std::map<int, Playback> m_playing; // by the order of their requests
    int m_lastPlayback = 0;
    std::multimap<qint64, Signal> m_signals; // by their moments
    int m_series = 0;                        // the number of the series of photos that runs
    bool m_seriesRuns = false;
};

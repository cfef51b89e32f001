#include "VirtualDevice.h"

#include "Scheduler.h"
#include "base/Moment.h"
#include "peers/PhotoManager.h"
#include "peers/SoundManager.h"

#include <PhotoManagerProxy.h>
#include <SoundManagerProxy.h>

#include <algorithm>
#include <limits>

namespace
{

using Moment::DAY_MS;
using Moment::MS_PER_S;

// Where the arguments of the sound manager's methods stand.
constexpr int FILE_TIME = 1;
constexpr int PLAYLIST_IDENTIFIER = 1;
constexpr int PLAYLIST_TRACK = 2;
constexpr int PLAYLIST_TIME = 3;
constexpr int STOP_IDENTIFIER = 1;

constexpr qint64 SHORTEST_INTERVAL_MS = 1000; // of a series of photos, however short the asked one

// A peer that is given a start time keeps it; one that has gone by, or none, means now.
qint64 BeginOf(const Request& request, int argument)
{
    const QTime time = SoundManager::ParseTime(request.arguments.value(argument).toString());
    if (!time.isValid())
        return request.moment_ms;
    const qint64 wait_ms = Moment::LocalTime(request.moment_ms).msecsTo(time);
    // A time half a day back is tomorrow's, and one as far ahead was yesterday's.
    if (wait_ms > DAY_MS / 2)
        return request.moment_ms;
    return request.moment_ms + (wait_ms < -DAY_MS / 2 ? wait_ms + DAY_MS : std::max<qint64>(wait_ms, 0));
}

void TellPhoto()
{
    Q_EMIT Scheduler::m_photoManProxy->PhotoTaken(0, {});
}

void TellEnd(const QString& source)
{
    if (source == QLatin1String(SoundManager::SOURCE_FILE))
        Q_EMIT Scheduler::m_soundManProxy->PlayFileCompleted({});
    else if (source == QLatin1String(SoundManager::SOURCE_PLAYLIST))
        Q_EMIT Scheduler::m_soundManProxy->PlayPlaylistCompleted({});
    else if (source == QLatin1String(SoundManager::SOURCE_STREAM))
        Q_EMIT Scheduler::m_soundManProxy->StreamEnabled(false);
}

} // namespace

VirtualDevice::VirtualDevice(EventQueue& events)
    : m_events(events)
{
}

void VirtualDevice::Receive(const Request& request, size_t event, const std::vector<PlaylistItem>& tracks)
{
    const QString& method = request.method;
    if (method == QLatin1String(SoundManager::PLAY_FILE))
        PlayFile(request, event);
    else if (method == QLatin1String(SoundManager::PLAY_PLAYLIST))
        PlayPlaylist(request, event, tracks);
    else if (method == QLatin1String(SoundManager::PLAY_STREAM))
        PlayOpen(request, event, SoundManager::SOURCE_STREAM);
    else if (method == QLatin1String(SoundManager::PLAY_RADIO_FM))
        PlayOpen(request, event, SoundManager::SOURCE_RADIO_FM);
    else if (method == QLatin1String(SoundManager::PLAY_AUX))
        PlayOpen(request, event, SoundManager::SOURCE_AUX);
    else if (method == QLatin1String(SoundManager::STOP_PLAY))
        Stop(request, event);
    else if (method == QLatin1String(PhotoManager::TAKE_PHOTO))
        Later(request.moment_ms + PHOTO_S * MS_PER_S, TellPhoto);
    else if (method == QLatin1String(PhotoManager::TAKE_PHOTO_STREAM))
        TakeSeries(request);
    else if (method == QLatin1String(PhotoManager::STOP_PHOTO_STREAM))
        m_seriesRuns = false;
}

void VirtualDevice::PlayFile(const Request& request, size_t event)
{
    const qint64 begin_ms = BeginOf(request, FILE_TIME);
    EndAt(begin_ms + MESSAGE_S * MS_PER_S, Begin(SoundManager::SOURCE_FILE, {}, event, begin_ms));
}

void VirtualDevice::PlayPlaylist(const Request& request, size_t event, const std::vector<PlaylistItem>& tracks)
{
    qint64 moment_ms = BeginOf(request, PLAYLIST_TIME);
    const int playback =
        Begin(SoundManager::SOURCE_PLAYLIST, request.arguments.value(PLAYLIST_IDENTIFIER).toString(), event, moment_ms);
    qint64 end_ms = moment_ms;
    for (auto i = std::max<size_t>(request.arguments.value(PLAYLIST_TRACK).toUInt(), 1); i <= tracks.size(); ++i)
    {
        const PlaylistItem& track = tracks[i - 1];
        end_ms = moment_ms + std::max(track.duration_s, 0) * MS_PER_S;
        m_events[event].tracks.append({moment_ms, end_ms, track.file});
        moment_ms = end_ms + PLAYLIST_GAP_S * MS_PER_S;
    }
    EndAt(end_ms, playback);
}

// Plays on until it is stopped, or replaced by another of its kind.
void VirtualDevice::PlayOpen(const Request& request, size_t event, const char* source)
{
    std::erase_if(m_playing, [&](const auto& entry) {
        const Playback& playback = entry.second;
        const bool isReplaced = playback.source == QLatin1String(source);
        if (isReplaced)
        {
            Event& ended = m_events[playback.event];
            ended.end_ms = request.moment_ms;
            // Another line may have stopped it in the same pass.
            if (ended.stoppedByLine == 0)
                ended.stoppedByLine = m_events[event].lineNumber;
        }
        return isReplaced;
    });
    Begin(source, {}, event, request.moment_ms);
}

void VirtualDevice::Stop(const Request& request, size_t event)
{
    const QString source = request.arguments.value(0).toString();
    const QString identifier = request.arguments.value(STOP_IDENTIFIER).toString();
    for (const auto& [id, playback] : m_playing)
    {
        const bool isMeant = playback.source == source && (identifier.isEmpty() || identifier == playback.identifier);
        // Its end may have been asked for in the same pass, by another line.
        if (!isMeant || m_events[playback.event].stoppedByLine != 0)
            continue;
        m_events[playback.event].stoppedByLine = m_events[event].lineNumber;
        EndAt(request.moment_ms, id);
    }
}

void VirtualDevice::TakeSeries(const Request& request)
{
    m_seriesRuns = true;
    const qint64 interval_ms = request.arguments.value(0).toInt() * MS_PER_S;
    TakeNext(request.moment_ms + PHOTO_S * MS_PER_S, std::max(interval_ms, SHORTEST_INTERVAL_MS), ++m_series);
}

void VirtualDevice::TakeNext(qint64 moment_ms, qint64 interval_ms, int series)
{
    Later(moment_ms, [=, this] {
        if (!m_seriesRuns || series != m_series)
            return;
        TellPhoto();
        TakeNext(moment_ms + interval_ms, interval_ms, series);
    });
}

int VirtualDevice::Begin(const char* source, const QString& identifier, size_t event, qint64 begin_ms)
{
    m_events[event].plays = true;
    m_events[event].begin_ms = begin_ms;
    m_playing.insert({++m_lastPlayback, {QLatin1String(source), identifier, event}});
    return m_lastPlayback;
}

void VirtualDevice::EndAt(qint64 moment_ms, int playback)
{
    Later(moment_ms, [=, this] { End(playback, moment_ms); });
}

void VirtualDevice::End(int playback, qint64 moment_ms)
{
    const auto ended = m_playing.extract(playback);
    // What was stopped has ended before its time.
    if (ended.empty())
        return;
    Event& event = m_events[ended.mapped().event];
    event.end_ms = std::max(moment_ms, event.begin_ms);
    TellEnd(ended.mapped().source);
}

void VirtualDevice::Later(qint64 moment_ms, Signal signal)
{
    // Of signals of one moment the one that was asked for first comes first.
    m_signals.emplace(moment_ms, std::move(signal));
}

void VirtualDevice::Play(qint64 now_ms)
{
    while (Next_ms() <= now_ms)
        m_signals.extract(m_signals.begin()).mapped()();
}

bool VirtualDevice::IsPlaying(size_t event) const
{
    return std::ranges::any_of(m_playing, [&](const auto& entry) { return entry.second.event == event; });
}

qint64 VirtualDevice::Next_ms() const
{
    return m_signals.empty() ? std::numeric_limits<qint64>::max() : m_signals.begin()->first;
}

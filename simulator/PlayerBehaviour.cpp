#include "PlayerBehaviour.h"

#include <QTime>
#include <QTimer>

#include <algorithm>
#include <array>

struct PlayerBehaviour::Source
{
    const char* method;     // that starts it
    const char* name;       // by which StopPlay calls it
    const char* signal;     // of its end
    int identifierArgument; // of the method; NONE: it has none
    int startTimeArgument;  // of the method; NONE: it starts at once
    int duration_ms;
    bool isAnnounced; // the signal tells on and off instead of a name
};

namespace
{

constexpr int NONE = -1;
constexpr int ANNOUNCED_AFTER_MS = 300;
constexpr int HALF_DAY_MS = 12 * 60 * 60 * 1000;

constexpr std::array SOURCES{
    PlayerBehaviour::Source{"PlayFile", "file", "PlayFileCompleted", NONE, 1, 3000, false},
    PlayerBehaviour::Source{"PlayPlaylist", "playlist", "PlayPlaylistCompleted", 1, 3, 9000, false},
    PlayerBehaviour::Source{"PlayStream", "stream", "StreamEnabled", NONE, NONE, 8000, true},
};

const QString TIME_FORMAT = QStringLiteral("hh:mm:ss");

int MillisecondsUntil(const QString& startTime)
{
    const QTime start = QTime::fromString(startTime, TIME_FORMAT);
    if (!start.isValid())
        return 0;
    const int wait_ms = QTime::currentTime().msecsTo(start);
    // A time half a day back is tomorrow's, and one as far ahead was yesterday's.
    if (wait_ms > HALF_DAY_MS)
        return 0;
    return wait_ms < -HALF_DAY_MS ? wait_ms + 2 * HALF_DAY_MS : std::max(wait_ms, 0);
}

} // namespace

PlayerBehaviour::PlayerBehaviour(Send send)
    : m_send(std::move(send))
{
}

PlayerBehaviour::~PlayerBehaviour() = default;

void PlayerBehaviour::Play(const Call& call)
{
    const auto* const source =
        std::ranges::find_if(SOURCES, [&call](const Source& row) { return call.method == QLatin1String(row.method); });
    if (source == SOURCES.end())
        return;

    const int id = ++m_lastId;
    m_playing.insert(
        id, {source, call.arguments.value(0).toString(), call.arguments.value(source->identifierArgument).toString()});
    const int wait_ms = MillisecondsUntil(call.arguments.value(source->startTimeArgument).toString());
    QTimer::singleShot(wait_ms + source->duration_ms, Qt::PreciseTimer, this, [this, id] { End(id); });
    if (!source->isAnnounced)
        return;
    QTimer::singleShot(wait_ms + ANNOUNCED_AFTER_MS, Qt::PreciseTimer, this, [this, id, source] {
        if (m_playing.contains(id))
            m_send(QString::fromLatin1(source->signal), {true});
    });
}

void PlayerBehaviour::Stop(const Call& call)
{
    const QString source = call.arguments.value(0).toString();
    const QString identifier = call.arguments.value(1).toString();
    for (const int id : m_playing.keys())
    {
        const Playback& playback = m_playing[id];
        if (source == QLatin1String(playback.source->name) &&
            (identifier.isEmpty() || identifier == playback.identifier))
            End(id);
    }
}

void PlayerBehaviour::End(int id)
{
    // What was stopped has ended before its time.
    if (!m_playing.contains(id))
        return;
    const Playback playback = m_playing.take(id);
    m_send(QString::fromLatin1(playback.source->signal),
           {playback.source->isAnnounced ? QVariant(false) : QVariant(playback.name)});
}

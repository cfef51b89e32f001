#include "RequestedStart.h"

#include "base/Moment.h"
#include "engine/RehearsalResult.h"
#include "words/Kinds.h"

#include <algorithm>

namespace
{

const QString BY_CHANCE = QStringLiteral(", by chance");
const QString OWN_TIME = QStringLiteral("<its time>");

QString PhraseOf(const Event& event, const RehearsalResult& run, const TaskPhrases::Map& phrases)
{
    if (event.kind == EventKind::FOLLOWUP)
        return QStringLiteral("end the series of photos");
    // What is not found in this rehearsal may be found in another.
    if (event.IsByChance())
        return phrases.at(event.lineNumber) + BY_CHANCE;
    const ScheduleLine& line = run.lines.at(static_cast<size_t>(event.lineNumber) - 1);
    return Kinds::Of(event.type).phrase(*line.action->m_task, event.requests);
}

// A playlist whose file is another asks for the same, and plays something else.
QStringList TracksOf(const Event& event)
{
    QStringList texts;
    for (const TrackTime& track : event.tracks)
        texts.append(
            QStringLiteral("%1, %2 s").arg(track.file).arg((track.end_ms - track.begin_ms) / Moment::MS_PER_S));
    return texts;
}

} // namespace

RequestedStart RequestedStart::Of(const Event& event, const RehearsalResult& run, const TaskPhrases::Map& phrases)
{
    RequestedStart start{event.moment_ms,
                         event.due_ms,
                         event.DueTime(),
                         event.lineNumber,
                         event.kind == EventKind::FOLLOWUP ? TASK_UNKNOWN : event.type,
                         PhraseOf(event, run, phrases),
                         {},
                         {},
                         {}};
    const QStringList tracks = TracksOf(event);
    for (Request request : event.requests)
    {
        start.requests.append(request.Text());
        start.exact += QString::number(request.moment_ms) + u' ' + request.Text() + u'\n';
        std::ranges::replace(request.arguments, QVariant(Moment::TimeText(event.DueTime())), QVariant(OWN_TIME));
        start.content += request.Text() + u'\n';
    }
    if (event.kind == EventKind::MISSED)
        start.exact = start.content = start.phrase;
    start.requests += tracks;
    start.exact += tracks.join(u'\n');
    start.content += tracks.join(u'\n');
    return start;
}

RequestedStarts Requested::StartsOf(const RehearsalResult& run, const TaskPhrases::Map& phrases)
{
    RequestedStarts starts;
    for (const Event& event : run.events)
    {
        if ((!event.requests.isEmpty() || event.IsByChance()) &&
            std::max(event.due_ms, event.moment_ms) >= run.begin_ms)
            starts[event.moment_ms].push_back(RequestedStart::Of(event, run, phrases));
    }
    return starts;
}

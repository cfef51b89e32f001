#include "EventLog.h"

#include "Clock.h"
#include "OwnTime.h"
#include "PastStart.h"
#include "Phases.h"
#include "ShownName.h"
#include "StartTime.h"
#include "base/Moment.h"
#include "tasks/PlayPlaylist.h"

#include <algorithm>
#include <utility>

namespace
{

using Moment::MS_PER_S;

const QString TWICE = QStringLiteral("the clocks are put back: the time comes twice");

qint64 FloorToSecond(qint64 moment_ms)
{
    return moment_ms / MS_PER_S * MS_PER_S;
}

// When the wall clock last showed time, today or yesterday.
std::int64_t LatestOf(const QTime& time)
{
    return StartIndex::Latest(QTime(0, 0).secsTo(time), StartIndex::MomentOf(Clock::Read()));
}

} // namespace

EventLog::EventLog(RehearsalClock& clock)
    : m_now_ms(clock.Now_ms())
    , m_loaded_ms(m_now_ms)
    , m_chances(clock)
    , m_device(m_events)
{
}

void EventLog::OnFound(const Action& action, ActionFinding finding)
{
    if (finding == ActionFinding::READY)
    {
        Event event = NewEvent(action, EventKind::START);
        MarkStart(event, action);
        m_chances.OnStart(action);
        m_running = &action;
        if (event.type == TASK_RECORD_PHOTO)
            m_series = {event.lineNumber, event.type, event.taskName};
        m_event = Append(std::move(event));
        return;
    }
    Event event = NewEvent(action, finding == ActionFinding::LOST ? EventKind::LOST : EventKind::SKIPPED);
    // Every far pass finds it again until its time.
    const std::optional<Outcome> earlier = Latest(event);
    if (earlier && earlier->due_ms == event.due_ms)
        return;
    event.reason = finding == ActionFinding::LOST ? QStringLiteral("found too late to be prepared")
                                                  : QStringLiteral("its StopPlaylist follows too soon");
    static_cast<void>(Append(std::move(event)));
}

size_t EventLog::Append(Event event)
{
    m_latest[static_cast<size_t>(event.kind)].insert(event.lineNumber, {event.moment_ms, event.due_ms, event.isForced});
    if (m_noted)
        m_noted(event);
    return m_events.Append(std::move(event));
}

// The latest event of that kind and line; none where it is older than a date can be long.
std::optional<EventLog::Outcome> EventLog::Latest(const Event& event) const
{
    const auto& outcomes = m_latest[static_cast<size_t>(event.kind)];
    const auto latest = outcomes.constFind(event.lineNumber);
    const bool isNew = latest != outcomes.constEnd() && latest->moment_ms >= m_now_ms - PastStart::LONGEST_DAY_MS;
    return isNew ? std::optional(*latest) : std::nullopt;
}

void EventLog::OnMissed(const MissedStart& start)
{
    const PastStart passed = PastStart::At(start.due_s, m_now_ms);
    Event event;
    event.kind = EventKind::MISSED;
    event.moment_ms = passed.moment_ms;
    event.reason = start.cause;
    event.lineNumber = start.lineNumber;
    // A time that the clocks leave out is missed when they do.
    if (passed.isLeftOut)
    {
        event.leftOut = StartIndex::TimeOf(start.due_s);
        event.reason = OwnTime::LeftOutText(event);
    }
    else
        event.phases_ms = m_chances.OfMissed(event.lineNumber, event.moment_ms);
    event.due_ms = event.moment_ms;
    event.type = start.type;
    event.taskName = ShownName::Of(start.type, start.taskName);
    AppendMissed(std::move(event));
}

void EventLog::AppendMissed(Event event)
{
    if (event.IsByChance())
        event.reason += QStringLiteral("; it starts %1").arg(Phases::Text(event.phases_ms));
    if (m_noted)
        m_noted(event);
    m_events.AppendMissed(std::move(event));
}

void EventLog::EndFarPass()
{
    for (const Chances::Unfound& unfound : m_chances.Repeated())
    {
        Event event = NewEvent(*unfound.action, EventKind::MISSED);
        event.moment_ms = unfound.due_ms;
        event.due_ms = unfound.due_ms;
        event.phases_ms = unfound.phases_ms;
        event.reason = TWICE;
        AppendMissed(std::move(event));
    }
}

Event EventLog::NewEvent(const Action& action, EventKind kind) const
{
    Event event;
    event.kind = kind;
    event.moment_ms = m_now_ms;
    event.lineNumber = action.m_lineNumber;
    event.type = action.m_task->m_type;
    event.taskName = ShownName::Of(event.type, action.m_task->GetName());
    const int left_s = Clock::SecondsTo(action.m_hour, action.m_minute, action.m_second);
    const bool isBehind = !action.IsAhead();
    const bool isLate =
        kind == EventKind::START ? action.m_forced || (!action.InTime().Has(left_s) && isBehind) : isBehind;
    const QTime own = isLate ? StartTime::ForLateness(action) : StartTime::Of(action);
    event.due_ms =
        isLate ? PastStart::At(LatestOf(own), m_now_ms).moment_ms : FloorToSecond(m_now_ms) + left_s * MS_PER_S;
    if (own.isValid() && Moment::LocalTime(event.due_ms) != own)
        OwnTime::Move(event, own);
    return event;
}

void EventLog::MarkStart(Event& event, const Action& action) const
{
    event.isForced = action.m_forced;
    if (action.IsBehind())
        event.delay_s = action.m_forced ? Clock::SecondsSince(action.m_startTime) : action.m_delay;
    const std::optional<Outcome> earlier = Latest(event);
    event.isRepeated =
        earlier && !earlier->isForced && Moment::LocalDate(earlier->due_ms) == Moment::LocalDate(event.due_ms);
    // Its day has just begun, and the daemon does not look whether it was due on the day before.
    const bool isEarly = (event.isForced || event.delay_s > 0) &&
                         Moment::LocalDate(event.due_ms) < Moment::LocalDate(m_now_ms) &&
                         !action.IsDueOn(Moment::LocalDate(event.due_ms));
    const QString time = StartTime::ForLateness(action).toString(QStringLiteral("HH:mm:ss"));
    if (isEarly && event.isForced)
    {
        event.due_ms = FloorToSecond(m_now_ms);
        event.leftOut = {};
        event.delay_s = 0;
        event.reason = QStringLiteral("too early: the load took it for the latest by its time of day, %1, and its day "
                                      "begins")
                           .arg(time);
    }
    // Not due when the schedule was loaded, it has waited for the first midnight that begins one of its days.
    else if (event.isForced && event.due_ms > m_loaded_ms)
        event.reason =
            QStringLiteral("the load took it for the latest by its time of day, %1, and its day begins").arg(time);
    else if (event.isForced)
        event.reason = QStringLiteral("in force since %1 when the schedule is loaded").arg(time);
    else if (event.isRepeated)
        event.reason = earlier->due_ms == event.due_ms ? QStringLiteral("asked for again before its time") : TWICE;
    else if (event.delay_s > 0)
        event.reason = QStringLiteral("by %1").arg(Moment::SpanText(event.delay_s));
    else if (action.m_delay > 0)
        event.reason = QStringLiteral("asked for %1 ahead: by its durations it may start a day late")
                           .arg(Moment::SpanText((event.due_ms - FloorToSecond(m_now_ms)) / MS_PER_S));
    if (isEarly && !event.isForced)
        event.reason += QStringLiteral(": its day begins, and counts from %1 of the day before, which is none of its "
                                       "days")
                            .arg(time);
    if (event.leftOut.isValid())
        event.reason += (event.reason.isEmpty() ? QString() : QStringLiteral(": ")) + OwnTime::LeftOutText(event);
    // What is asked for again before its time comes anyway.
    if (!event.isForced && !(event.isRepeated && earlier->due_ms == event.due_ms))
        event.phases_ms = m_chances.OfStart(action, event.due_ms, event.delay_s > 0);
    if (event.IsByChance())
        event.reason += (event.reason.isEmpty() ? QString() : QStringLiteral("; ")) + Phases::Text(event.phases_ms);
}

void EventLog::Receive(Request request)
{
    if (m_event == NONE)
    {
        Event event;
        event.kind = EventKind::FOLLOWUP;
        event.moment_ms = m_now_ms;
        event.due_ms = m_now_ms;
        // Only a series of photos asks for something by itself: that it ends. It may have run for days.
        event.lineNumber = m_series.lineNumber;
        event.type = m_series.type;
        event.taskName = m_series.taskName;
        m_event = Append(std::move(event));
    }
    static const std::vector<PlaylistItem> NO_TRACKS;
    const auto* playlist = m_running != nullptr ? qobject_cast<const PlayPlaylist*>(m_running->m_task.get()) : nullptr;
    m_device.Receive(request, m_event, playlist != nullptr ? playlist->Tracks() : NO_TRACKS);
    m_events[m_event].requests.append(std::move(request));
}

void EventLog::EndPass()
{
    m_event = NONE;
    m_running = nullptr;
    m_chances.NoteEnds();
}

void EventLog::PlayDevice()
{
    m_device.Play(m_now_ms);
    EndPass();
}

void EventLog::Release(qint64 from_ms, const EventQueue::Take& take)
{
    const auto isHeld = [this](size_t event) { return event == m_event || m_device.IsPlaying(event); };
    const qint64 until_ms = std::max(m_now_ms - EventQueue::LATEST_MS, std::min(m_now_ms, from_ms));
    m_events.Release(until_ms, isHeld, take);
}

void EventLog::Finish(const EventQueue::Take& take)
{
    m_events.Finish(take);
}

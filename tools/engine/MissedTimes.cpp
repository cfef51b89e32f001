#include "MissedTimes.h"

#include "Action.h"
#include "Moment.h"

namespace
{

using Moment::DAY_MS;
using Moment::MS_PER_S;

constexpr int LAST_UNSEEN_S = 2; // after midnight: what is due then, no pass sees ahead

Event Missed(const Action& action, qint64 moment_ms, const QString& reason)
{
    Event event;
    event.kind = EventKind::MISSED;
    event.moment_ms = moment_ms;
    event.due_ms = moment_ms;
    event.lineNumber = action.m_lineNumber;
    event.type = action.m_task->m_type;
    event.taskName = action.m_task->GetName();
    event.reason = reason;
    return event;
}

void RemoveBefore(QMultiHash<const Action*, qint64>& times, qint64 moment_ms)
{
    times.removeIf([=](const auto& entry) { return entry.value() < moment_ms; });
}

} // namespace

QString MissedTimes::Reason(const Open& open) const
{
    if (m_running.contains(open.action, open.due_ms))
        return QStringLiteral("still under way since its last start");
    if (QTime(0, 0).secsTo(open.action->m_startTime) <= LAST_UNSEEN_S)
        return QStringLiteral("too soon after midnight: the daemon looks ahead within one day only");
    if (open.action->HasSpotDate() && open.due_ms % DAY_MS <= LAST_UNSEEN_S * MS_PER_S)
        return QStringLiteral("too soon after midnight in UTC, when its spot date begins");
    const qint64 sinceChange_ms = open.due_ms - m_lastChange_ms;
    if (sinceChange_ms >= 0 && sinceChange_ms < Action::EARLY_S * MS_PER_S)
        return QStringLiteral("too soon after the clocks are changed: no pass found it in time");
    return QStringLiteral("no pass found it in time");
}

void MissedTimes::NoteRunning(qint64 from_ms, qint64 to_ms, const std::vector<WatchList::Watch>& watches)
{
    for (const WatchList::Watch& watch : watches)
    {
        const bool isInside = watch.isDue && watch.start_ms > from_ms && watch.start_ms <= to_ms;
        if (isInside && watch.action->m_task->IsRunning())
            m_running.insert(watch.action, watch.start_ms);
    }
}

void MissedTimes::Look(const Stretch& stretch, const std::vector<WatchList::Watch>& watches)
{
    for (const WatchList::Watch& watch : watches)
    {
        const bool comes = watch.isDue && watch.start_ms >= stretch.begin_ms && watch.start_ms < stretch.end_ms;
        if (comes && watch.action->m_startTime.isValid())
            m_open.push_back({watch.action, watch.start_ms});
    }
    // A start may still come a little after its time.
    const qint64 last_ms = stretch.end_ms - (Action::IN_TIME_S + 1) * MS_PER_S;
    std::erase_if(m_open, [&](const Open& open) {
        if (open.due_ms >= last_ms)
            return false;
        if (!m_noted.contains(open.action, open.due_ms))
            m_events.push_back(Missed(*open.action, open.due_ms, Reason(open)));
        return true;
    });
    // What is asked for ahead of its time may be due in the next stretch.
    RemoveBefore(m_noted, last_ms);
    RemoveBefore(m_running, last_ms);
}

void MissedTimes::LookAtChange(const Stretch& before, const Stretch& next, const std::vector<WatchList::Watch>& watches)
{
    qint64 from_ms = before.end_ms - before.midnight_ms;
    const qint64 to_ms = next.begin_ms - next.midnight_ms;
    const bool isAnotherDay = before.isDayEnd;
    if (from_ms != to_ms + (isAnotherDay ? DAY_MS : 0))
        m_lastChange_ms = next.begin_ms;
    qint64 midnight_ms = before.midnight_ms; // of the date that begins at the change, or goes on, by the old time
    if (isAnotherDay)
    {
        from_ms -= DAY_MS;
        midnight_ms += DAY_MS;
    }
    for (const WatchList::Watch& watch : watches)
    {
        const QTime start = watch.action->m_startTime;
        const int time_ms = start.msecsSinceStartOfDay();
        const bool isLeftOut = watch.isDue && start.isValid() && time_ms >= from_ms && time_ms < to_ms;
        // What is due at the change itself may have been asked for ahead of it.
        if (isLeftOut && !m_noted.contains(watch.action, midnight_ms + time_ms))
            m_events.push_back(Missed(
                *watch.action, next.begin_ms,
                QStringLiteral("the clocks are put forward over %1").arg(start.toString(QStringLiteral("HH:mm:ss")))));
    }
}

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

QString Reason(const Action& action, qint64 sinceChange_ms)
{
    if (action.m_task->IsRunning())
        return QStringLiteral("still under way since its last start");
    if (QTime(0, 0).secsTo(action.m_startTime) <= LAST_UNSEEN_S)
        return QStringLiteral("too soon after midnight: the daemon looks ahead within one day only");
    if (sinceChange_ms < Action::EARLY_S * MS_PER_S)
        return QStringLiteral("too soon after the clocks are changed: no pass found it in time");
    return QStringLiteral("no pass found it in time");
}

} // namespace

void MissedTimes::Look(const Stretch& stretch, const std::vector<WatchList::Watch>& watches)
{
    // A start may still come a little after its time.
    const qint64 last_ms = stretch.end_ms - (Action::IN_TIME_S + 1) * MS_PER_S;
    for (const WatchList::Watch& watch : watches)
    {
        const bool comes = watch.isDue && watch.start_ms >= stretch.begin_ms && watch.start_ms < last_ms;
        if (comes && watch.action->m_startTime.isValid() && !m_noted.contains(watch.action, watch.start_ms))
            m_events.push_back(
                Missed(*watch.action, watch.start_ms, Reason(*watch.action, watch.start_ms - m_lastChange_ms)));
    }
    m_noted.clear();
}

void MissedTimes::LookAtChange(const Stretch& before, const Stretch& next, const std::vector<WatchList::Watch>& watches)
{
    qint64 from_ms = before.end_ms - before.midnight_ms;
    const qint64 to_ms = next.begin_ms - next.midnight_ms;
    const bool isAnotherDay = before.isDayEnd;
    if (from_ms != to_ms + (isAnotherDay ? DAY_MS : 0))
        m_lastChange_ms = next.begin_ms;
    if (isAnotherDay)
        from_ms -= DAY_MS;
    for (const WatchList::Watch& watch : watches)
    {
        const QTime start = watch.action->m_startTime;
        const int time_ms = start.msecsSinceStartOfDay();
        if (watch.isDue && start.isValid() && time_ms >= from_ms && time_ms < to_ms)
            m_events.push_back(Missed(
                *watch.action, next.begin_ms,
                QStringLiteral("the clocks are put forward over %1").arg(start.toString(QStringLiteral("HH:mm:ss")))));
    }
}

#include "WatchList.h"

#include "Clock.h"
#include "Scheduler.h"
#include "base/Moment.h"

#include <algorithm>
#include <numeric>

namespace
{

using Moment::DAY_MS;
using Moment::DAY_S;
using Moment::MS_PER_S;

// The sooner of two moments, of which each may be none.
qint64 Sooner(qint64 left_ms, qint64 right_ms)
{
    if (left_ms == WatchList::NEVER || right_ms == WatchList::NEVER)
        return std::max(left_ms, right_ms);
    return std::min(left_ms, right_ms);
}

} // namespace

void WatchList::Load(const Scheduler& scheduler)
{
    m_watches.clear();
    m_places.clear();
    m_close.clear();
    for (const ActionList* list : {&scheduler.FarActions(), &scheduler.EarlyActions()})
    {
        for (const auto& action : *list)
        {
            m_places.insert(action.get(), m_watches.size());
            m_watches.push_back({action.get(), action->InTime(), action->Delayed()});
        }
    }
}

void WatchList::Renew(const Stretch& stretch)
{
    m_stretch = stretch;
    const qint64 now_s = Clock::Now();
    const qint64 midnight_s = StartIndex::Latest(0, Clock::Read().local_ms / MS_PER_S);
    for (Watch& watch : m_watches)
    {
        const Action& action = *watch.action;
        watch.isDue = action.IsDueToday();
        watch.start_ms = (now_s + Clock::SecondsTo(action.m_hour, action.m_minute, action.m_second)) * MS_PER_S;
        watch.due_s = midnight_s + action.StartSecond().value_or(0);
    }
}

void WatchList::Sort(const Scheduler& scheduler)
{
    for (const size_t place : m_close)
        m_watches[place].isWatchedClosely = false;
    m_close.clear();
    for (const auto& action : scheduler.EarlyActions())
    {
        m_close.push_back(m_places.value(action.get()));
        m_watches[m_close.back()].isWatchedClosely = true;
    }
}

qint64 WatchList::NextFar_ms(qint64 now_ms) const
{
    return std::accumulate(m_watches.begin(), m_watches.end(), NEVER, [&](qint64 next_ms, const Watch& watch) {
        return watch.isDue ? Sooner(next_ms, NextFar_ms(watch, now_ms)) : next_ms;
    });
}

qint64 WatchList::NextFar_ms(const Watch& watch, qint64 now_ms) const
{
    const Action& action = *watch.action;
    qint64 next_ms = NEVER;
    // The passes right before and after a start decide whether it is missed.
    if (action.m_startTime.isValid() && action.m_answeredDue_s != watch.due_s)
        next_ms =
            Next_ms({watch.start_ms - Scheduler::FAR_INTERVAL_MS, watch.start_ms + Scheduler::FAR_INTERVAL_MS}, now_ms);
    if (action.m_task->IsRunning())
        return next_ms;
    if (action.m_forced)
        return now_ms;
    next_ms = Sooner(next_ms, Next_ms(SpanOf(watch.start_ms, Action::AHEAD), now_ms));
    return watch.delayed.IsEmpty() ? next_ms : Sooner(next_ms, NextLate_ms(watch, now_ms, action.LateStart()));
}

qint64 WatchList::NextEarly_ms(qint64 now_ms) const
{
    return std::accumulate(m_close.begin(), m_close.end(), NEVER, [&](qint64 next_ms, size_t place) {
        return Sooner(next_ms, NextEarly_ms(m_watches[place], now_ms));
    });
}

qint64 WatchList::NextEarly_ms(const Watch& watch, qint64 now_ms) const
{
    if (watch.action->m_forced)
        return now_ms;
    return Sooner(Next_ms(SpanOf(watch.start_ms, watch.inTime), now_ms), NextLate_ms(watch, now_ms, watch.delayed));
}

// The lateness counts from when the clock on the wall last showed the start time, today or yesterday; that of a time
// that does not exist from midnight.
qint64 WatchList::NextLate_ms(const Watch& watch, qint64 now_ms, const Action::Window& window) const
{
    if (window.IsEmpty())
        return NEVER;
    if (window.last_s <= 1 - DAY_S)
        return Next_ms({m_stretch.begin_ms, m_stretch.end_ms}, now_ms);
    const qint64 today_ms = m_stretch.midnight_ms + watch.action->m_startTime.msecsSinceStartOfDay();
    return Sooner(Next_ms(SpanOf(today_ms - DAY_MS, window), now_ms), Next_ms(SpanOf(today_ms, window), now_ms));
}

// A second is left until its end.
WatchList::Span WatchList::SpanOf(qint64 start_ms, const Action::Window& window)
{
    return {start_ms - window.first_s * MS_PER_S, start_ms - (window.last_s - 1) * MS_PER_S};
}

qint64 WatchList::Next_ms(const Span& span, qint64 now_ms) const
{
    const qint64 first_ms = std::max(span.begin_ms, now_ms);
    return first_ms < std::min(span.end_ms, m_stretch.end_ms) ? first_ms : NEVER;
}

#include "WatchList.h"

#include "Clock.h"
#include "Scheduler.h"
#include "base/Moment.h"

#include <algorithm>
#include <iterator>
#include <limits>
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
    m_days.clear();
    m_places.clear();
    m_close.clear();
    m_forced.clear();
    m_chances.clear();
    m_open.clear();
    m_coming = 0;
    std::map<DaysKey, size_t> days;
    // By their times of day, as a stretch has them.
    scheduler.Starts().Within(std::numeric_limits<int>::min(), std::numeric_limits<int>::max(),
                              [&](const auto& entry) { Add(**entry, days); });
}

void WatchList::Add(const Action& action, std::map<DaysKey, size_t>& days)
{
    const auto [group, isNew] = days.try_emplace(DaysKey(action), m_days.size());
    if (isNew)
        m_days.push_back({&action});
    if (action.m_forced)
        m_forced.push_back(m_watches.size());
    m_places.insert(&action, m_watches.size());
    m_watches.push_back({&action, group->second, action.StartSecond()});
}

void WatchList::Renew(const Stretch& stretch)
{
    m_stretch = stretch;
    for (Days& days : m_days)
        days.areDue = days.action->IsDueToday();
    SetStarts();
    m_open.clear();
    m_chances.clear();
    m_coming = 0;
    for (size_t place = 0; place < m_watches.size(); ++place)
    {
        if (m_days[m_watches[place].days].areDue)
            AddChances(place);
    }
    std::ranges::sort(m_chances, {}, [](const Chance& chance) { return chance.span.begin_ms; });
}

void WatchList::SetStarts()
{
    const Clock::Reading now = Clock::Read();
    const qint64 now_s = Clock::Now();
    const qint64 midnight_s = StartIndex::Latest(0, now.local_ms / MS_PER_S);
    const bool isPlain = Clock::IsSteady(now);
    for (Watch& watch : m_watches)
    {
        const Action& action = *watch.action;
        watch.start_ms = isPlain && watch.second
                             ? m_stretch.midnight_ms + *watch.second * MS_PER_S
                             : (now_s + Clock::SecondsTo(action.m_hour, action.m_minute, action.m_second)) * MS_PER_S;
        watch.due_s = midnight_s + watch.second.value_or(0);
    }
}

void WatchList::AddChances(size_t place)
{
    const Watch& watch = m_watches[place];
    AddChance({SpanOf(watch.start_ms, Action::AHEAD).begin_ms, watch.start_ms + Scheduler::FAR_INTERVAL_MS}, place,
              false);
    for (const Span& span : LateSpans(*watch.action, watch.action->LateStart()))
        AddChance(span, place, true);
}

void WatchList::AddChance(const Span& span, size_t place, bool isLate)
{
    if (Next_ms(span, m_stretch.begin_ms) != NEVER)
        m_chances.push_back({span, place, isLate});
}

void WatchList::Sort(const Scheduler& scheduler)
{
    m_close.clear();
    std::ranges::transform(scheduler.EarlyActions(), std::back_inserter(m_close),
                           [this](const auto& action) { return m_places.value(action.get()); });
}

qint64 WatchList::NextFar_ms(qint64 now_ms)
{
    for (; m_coming < m_chances.size() && m_chances[m_coming].span.begin_ms <= now_ms; ++m_coming)
        m_open.push_back(m_chances[m_coming]);
    std::erase_if(m_open, [&](const Chance& chance) {
        // A playlist that has been played is not joined any more.
        return chance.span.end_ms <= now_ms || (chance.isLate && m_watches[chance.watch].action->LateStart().IsEmpty());
    });
    qint64 next_ms = NEVER;
    for (const size_t place : m_forced)
    {
        const Watch& watch = m_watches[place];
        if (watch.action->m_forced && m_days[watch.days].areDue && !watch.action->m_task->IsRunning())
            next_ms = now_ms;
    }
    next_ms = std::accumulate(m_open.begin(), m_open.end(), next_ms, [&](qint64 sooner_ms, const Chance& chance) {
        return Sooner(sooner_ms, NextFar_ms(chance, now_ms));
    });
    for (size_t i = m_coming; i < m_chances.size() && (next_ms == NEVER || m_chances[i].span.begin_ms < next_ms); ++i)
        next_ms = Sooner(next_ms, NextFar_ms(m_chances[i], now_ms));
    return next_ms;
}

qint64 WatchList::NextFar_ms(const Chance& chance, qint64 now_ms) const
{
    const Watch& watch = m_watches[chance.watch];
    if (!chance.isLate)
        return NextNear_ms(watch, now_ms);
    const Action& action = *watch.action;
    return action.m_task->IsRunning() || action.LateStart().IsEmpty() ? NEVER : Next_ms(chance.span, now_ms);
}

qint64 WatchList::NextNear_ms(const Watch& watch, qint64 now_ms) const
{
    const Action& action = *watch.action;
    qint64 next_ms = NEVER;
    // The passes right before and after a start decide whether it is missed.
    if (action.m_startTime.isValid() && action.m_answeredDay != StartIndex::DayOf(watch.due_s))
        next_ms =
            Next_ms({watch.start_ms - Scheduler::FAR_INTERVAL_MS, watch.start_ms + Scheduler::FAR_INTERVAL_MS}, now_ms);
    if (action.m_isWatched || action.m_task->IsRunning())
        return next_ms;
    return Sooner(next_ms, Next_ms(SpanOf(watch.start_ms, Action::AHEAD), now_ms));
}

qint64 WatchList::NextEarly_ms(qint64 now_ms) const
{
    return std::accumulate(m_close.begin(), m_close.end(), NEVER, [&](qint64 next_ms, size_t place) {
        return Sooner(next_ms, NextEarly_ms(m_watches[place], now_ms));
    });
}

qint64 WatchList::NextEarly_ms(const Watch& watch, qint64 now_ms) const
{
    const Action& action = *watch.action;
    if (action.m_forced)
        return now_ms;
    const std::array<Span, 2> late = LateSpans(action, action.Delayed());
    return std::accumulate(late.begin(), late.end(), Next_ms(SpanOf(watch.start_ms, action.InTime()), now_ms),
                           [&](qint64 next_ms, const Span& span) { return Sooner(next_ms, Next_ms(span, now_ms)); });
}

// The lateness counts from when the clock on the wall last showed the start time, today or yesterday; that of a time
// that does not exist from midnight.
std::array<WatchList::Span, 2> WatchList::LateSpans(const Action& action, const Action::Window& window) const
{
    if (window.IsEmpty())
        return {};
    if (window.last_s <= 1 - DAY_S)
        return {Span{m_stretch.begin_ms, m_stretch.end_ms}};
    const qint64 today_ms = m_stretch.midnight_ms + action.m_startTime.msecsSinceStartOfDay();
    return {SpanOf(today_ms - DAY_MS, window), SpanOf(today_ms, window)};
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

#include "EventQueue.h"

#include <algorithm>
#include <limits>
#include <utility>

size_t EventQueue::Append(Event event)
{
    m_events.push_back(std::move(event));
    return m_taken + m_events.size() - 1;
}

void EventQueue::AppendMissed(Event event)
{
    const qint64 moment_ms = event.moment_ms;
    m_missed.emplace(moment_ms, std::move(event));
}

void EventQueue::Release(qint64 until_ms, const IsHeld& isHeld, const Take& take)
{
    for (;;)
    {
        const qint64 event_ms = m_events.empty() ? until_ms : m_events.front().moment_ms;
        const qint64 missed_ms = m_missed.empty() ? until_ms : m_missed.begin()->first;
        if (std::min(event_ms, missed_ms) >= until_ms)
            return;
        if (missed_ms < event_ms)
        {
            take(std::move(m_missed.extract(m_missed.begin()).mapped()));
            continue;
        }
        if (isHeld(m_taken))
            return;
        take(std::move(m_events.front()));
        m_events.pop_front();
        ++m_taken;
    }
}

void EventQueue::Finish(const Take& take)
{
    if (std::ranges::is_sorted(m_events, {}, &Event::moment_ms))
    {
        Release(
            std::numeric_limits<qint64>::max(), [](size_t) { return false; }, take);
        return;
    }
    m_taken += m_events.size();
    for (auto& [moment_ms, event] : m_missed)
        m_events.push_back(std::move(event));
    m_missed.clear();
    std::ranges::stable_sort(m_events, {}, &Event::moment_ms);
    for (Event& event : std::exchange(m_events, {}))
        take(std::move(event));
}

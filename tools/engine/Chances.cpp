#include "Chances.h"

#include "Action.h"
#include "Clock.h"
#include "ClockChange.h"
#include "Event.h"
#include "Phases.h"
#include "Scheduler.h"
#include "base/Moment.h"

#include <algorithm>
#include <limits>

namespace
{

using Moment::MS_PER_S;

constexpr qint64 ALWAYS = std::numeric_limits<qint64>::min() / 2;

} // namespace

void Chances::Load(const Scheduler& scheduler)
{
    m_loaded_ms = m_clock.Now_ms();
    m_busy.clear();
    m_free_ms.clear();
    m_actions.clear();
    scheduler.Starts().Within(std::numeric_limits<int>::min(), std::numeric_limits<int>::max(), [&](const auto& entry) {
        const auto line = static_cast<size_t>((*entry)->m_lineNumber);
        m_actions.resize(std::max(m_actions.size(), line + 1));
        m_actions[line] = entry->get();
    });
}

int Chances::Of(const Action& action, qint64 due_ms, qint64 around_ms) const
{
    // Right after a load there is one phase, that of the load.
    if (due_ms < m_loaded_ms + qint64{2} * Event::PHASES_MS)
        return 0;
    return Phases::Of(action, m_clock, {around_ms, m_free_ms.value(action.m_lineNumber, ALWAYS)});
}

int Chances::OfStart(const Action& action, qint64 due_ms, bool isLate) const
{
    const int phases_ms = Of(action, due_ms, isLate ? m_clock.Now_ms() / MS_PER_S * MS_PER_S : due_ms);
    return phases_ms == 0 ? Event::PHASES_MS : phases_ms;
}

int Chances::OfMissed(int lineNumber, qint64 due_ms) const
{
    const auto line = static_cast<size_t>(lineNumber);
    if (line >= m_actions.size() || m_actions[line] == nullptr || std::ranges::count(m_busy, m_actions[line]) > 0)
        return 0;
    const int phases_ms = Of(*m_actions[line], due_ms, due_ms);
    if (phases_ms < Event::PHASES_MS)
        return phases_ms;
    // A far pass that came in the moment in which it was freed was too early for it, and the next one too late. Found
    // in every phase, it was kept from its start by something else.
    return due_ms - m_free_ms.value(lineNumber, ALWAYS) == Event::PHASES_MS ? phases_ms - 1 : 0;
}

void Chances::NoteEnds()
{
    std::erase_if(m_busy, [this](const Action* action) {
        if (action->m_task->IsRunning())
            return false;
        m_free_ms.insert(action->m_lineNumber, m_clock.Now_ms());
        return true;
    });
}

std::vector<Chances::Unfound> Chances::Repeated() const
{
    std::vector<Unfound> unfound;
    const qint64 now_ms = m_clock.Now_ms();
    for (const ClockChange& change : ClockChange::Between(now_ms - Event::PHASES_MS, now_ms + 1))
    {
        const int back = QTime(0, 0).secsTo(Moment::LocalTime(change.moment_ms));
        const std::int64_t today_s = StartIndex::Latest(0, StartIndex::MomentOf(Clock::Read()));
        for (const Action* const action : m_actions)
        {
            const int second = action != nullptr ? action->StartSecond().value_or(-1) : -1;
            const qint64 due_ms = change.moment_ms + (second - back) * MS_PER_S;
            if (change.shift_s > 0 || second < back || due_ms > now_ms || action->m_isWatched ||
                action->m_answeredDay != StartIndex::DayOf(today_s))
                continue;
            const int phases_ms = OfMissed(action->m_lineNumber, due_ms);
            if (phases_ms > 0)
                unfound.push_back({action, due_ms, phases_ms});
        }
    }
    return unfound;
}

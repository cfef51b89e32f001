#include "RehearsalClock.h"

#include "Clock.h"

#include <algorithm>

RehearsalClock::RehearsalClock(qint64 start_ms)
    : m_start_ms(start_ms)
    , m_now_ms(start_ms)
    , m_phase_ms(start_ms)
{
    Clock::SetSource([this] { return m_now_ms; }, [this] { return m_now_ms - m_stepped_ms; });
}

RehearsalClock::~RehearsalClock()
{
    Clock::SetSource({});
}

void RehearsalClock::PassTo(qint64 moment_ms)
{
    m_now_ms = std::max(m_now_ms, moment_ms);
}

void RehearsalClock::Step(qint64 step_ms)
{
    m_now_ms += step_ms;
    m_stepped_ms += step_ms;
    m_phase_ms += step_ms;
}

qint64 RehearsalClock::WallTickFrom(qint64 moment_ms, qint64 period_ms) const
{
    const qint64 from_ms = std::max(moment_ms, m_phase_ms + 1);
    return (from_ms + period_ms - 1) / period_ms * period_ms;
}

qint64 RehearsalClock::TickFrom(qint64 moment_ms, qint64 period_ms) const
{
    const qint64 from_ms = std::max(moment_ms, m_phase_ms + 1);
    return m_phase_ms + (from_ms - m_phase_ms + period_ms - 1) / period_ms * period_ms;
}

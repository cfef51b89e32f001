#pragma once

#include <QtGlobal>

#include <utility>

// The clocks of a rehearsal, in the system's place for as long as it lives. Milliseconds since 1970-01-01 00:00:00 UTC,
// as the calendar has them; the scheduler's far timer follows the time that passes, its early one the calendar.
class RehearsalClock final
{
public:
    explicit RehearsalClock(qint64 start_ms);
    ~RehearsalClock();

    RehearsalClock(const RehearsalClock&) = delete;
    RehearsalClock& operator=(const RehearsalClock&) = delete;

    [[nodiscard]] const qint64& Now_ms() const { return m_now_ms; }

    // Lets time pass up to that moment; one that has passed changes nothing.
    void PassTo(qint64 moment_ms);
    void Pass(qint64 span_ms) { m_now_ms += span_ms; }

    // Shows another moment, and no time passes; returns the one that was shown.
    qint64 Show(qint64 moment_ms) { return std::exchange(m_now_ms, moment_ms); }

    // Steps the calendar forward or back; no time passes.
    void Step(qint64 step_ms);

    // The timers are started now.
    void StartTimers() { m_phase_ms = m_now_ms; }

    // The first tick of a timer with that period that is not before moment_ms. The start itself is none.
    [[nodiscard]] qint64 TickFrom(qint64 moment_ms, qint64 period_ms) const;
    // The same of a timer whose ticks fall on the multiples of its period by the calendar.
    [[nodiscard]] qint64 WallTickFrom(qint64 moment_ms, qint64 period_ms) const;
    [[nodiscard]] bool IsTick(qint64 period_ms) const { return (m_now_ms - m_phase_ms) % period_ms == 0; }

    // What the calendar shows when so much time will have passed since the start, unless it is stepped again.
    [[nodiscard]] qint64 After_ms(qint64 span_ms) const { return m_start_ms + span_ms + m_stepped_ms; }

private:
    const qint64 m_start_ms;
    qint64 m_now_ms;
    qint64 m_phase_ms;
    qint64 m_stepped_ms = 0;
};

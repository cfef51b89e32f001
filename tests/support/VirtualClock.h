#pragma once

#include <QDate>
#include <QTime>

#include <cstdint>

// Takes the system clocks' place for as long as it lives. Time stands still until it is moved: advancing lets it pass,
// setting another moment is a step of the calendar that the machine's uptime does not make.
class VirtualClock final
{
public:
    // Which of the two moments a local time means on a day that has it twice.
    enum Occurrence
    {
        ONLY,
        FIRST,
        SECOND,
    };

    // Begins at noon of Wednesday, 2024-05-15, local time.
    VirtualClock();
    ~VirtualClock();

    VirtualClock(const VirtualClock&) = delete;
    VirtualClock& operator=(const VirtualClock&) = delete;

    // A moment by the clock on the wall, in the time zone of now. Throws std::invalid_argument for one that does not
    // exist there, and for one that exists twice where it does not say which.
    void SetLocal(const QDate& date, const QTime& time, Occurrence occurrence = ONLY);

    // Another time of the same local date.
    void SetLocal(const QTime& time);

    // A moment in milliseconds since 1970-01-01 00:00:00 UTC.
    void SetUtc_ms(std::int64_t time_ms) { m_time_ms = time_ms; }
    void SetUtc(const QDate& date, const QTime& time);

    void Advance_ms(std::int64_t step_ms)
    {
        m_time_ms += step_ms;
        m_uptime_ms += step_ms;
    }
    void Advance_s(std::int64_t step_s) { Advance_ms(step_s * 1000); }

    // Puts the calendar forward, or back.
    void Step_s(std::int64_t step_s) { m_time_ms += step_s * 1000; }

    [[nodiscard]] std::int64_t Utc_ms() const { return m_time_ms; }

private:
    std::int64_t m_time_ms = 0;
    std::int64_t m_uptime_ms = 0;
};

#pragma once

#include "Clock.h"

#include <cstdint>

// What happened between two looks at the clock.
struct Passage
{
    // Between two looks of a daemon that nothing holds.
    static constexpr std::int64_t LOOK_MS = 3000;

    // Less makes no start pass unseen.
    static constexpr std::int64_t LEAST_JUMP_MS = 1000;

    Clock::Reading from;
    Clock::Reading to;

    // By how much the clock on the wall was put forward.
    [[nodiscard]] std::int64_t Jump_ms() const
    {
        return (to.local_ms - from.local_ms) - (to.uptime_ms - from.uptime_ms);
    }

    // By how much the calendar was, which summer time and time zones leave alone.
    [[nodiscard]] std::int64_t ClockStep_ms() const
    {
        return (to.calendar_ms - from.calendar_ms) - (to.uptime_ms - from.uptime_ms);
    }
};

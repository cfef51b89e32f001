#pragma once

#include "ActionDays.h"

#include <compare>
#include <cstdint>

// What decides on which days an action is due: actions with equal keys are due at the same moments.
struct DaysKey
{
    explicit DaysKey(const ActionDays& days)
        : dow(days.m_dow)
        , day(days.m_day)
        , month(days.m_month)
        , year(days.m_year)
        , from(days.m_hasFrom ? days.m_from.toJulianDay() : NO_LIMIT)
        , to(days.m_hasTo ? days.m_to.toJulianDay() : NO_LIMIT)
    {
    }

    auto operator<=>(const DaysKey&) const = default;

    // No date's number: a schedule's dates have four digits.
    static constexpr std::int64_t NO_LIMIT = -1;

    std::uint8_t dow;
    int day;
    int month;
    int year;
    std::int64_t from;
    std::int64_t to;
};

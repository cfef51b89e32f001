#pragma once

#include "engine/DaysKey.h"
#include "engine/DueDays.h"

#include <bitset>
#include <map>
#include <vector>

// On which days of a year actions are due. Uses DueDays, of which only one may live.
class YearDays final
{
public:
    static constexpr int DAYS = 366;
    using Bits = std::bitset<DAYS>; // from the first day on

    explicit YearDays(const QDate& first);

    [[nodiscard]] Bits Of(const Action& action);

private:
    [[nodiscard]] Bits AllOf(const Action& action);

    const QDate m_first;
    DueDays m_dueDays;
    std::vector<int> m_changing;       // days on which the time of day counts, as a clock is changed
    std::map<DaysKey, Bits> m_ofDates; // of actions that local dates alone decide on, but for those days
};

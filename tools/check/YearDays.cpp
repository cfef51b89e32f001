#include "YearDays.h"

YearDays::YearDays(const QDate& first)
    : m_first(first)
{
    for (int day = 0; day < DAYS; ++day)
    {
        if (!m_dueDays.IsPlain(first.addDays(day)))
            m_changing.push_back(day);
    }
}

YearDays::Bits YearDays::Of(const Action& action)
{
    // The date in UTC depends on the time of day.
    if (action.HasSpotDate())
        return AllOf(action);
    const auto [place, isNew] = m_ofDates.try_emplace(DaysKey(action));
    if (isNew)
        place->second = AllOf(action);
    Bits days = place->second;
    for (const int day : m_changing)
        days[static_cast<size_t>(day)] = m_dueDays.IsDue(action, m_first.addDays(day));
    return days;
}

YearDays::Bits YearDays::AllOf(const Action& action)
{
    Bits days;
    for (int day = 0; day < DAYS; ++day)
        days[static_cast<size_t>(day)] = m_dueDays.IsDue(action, m_first.addDays(day));
    return days;
}

#include "PastDays.h"

#include "text/ScheduleFields.h"

#include <algorithm>

namespace
{

constexpr int LAST_YEAR = 9999;

// Whether the spot date alone decides, and names its year.
bool IsOfOneYear(const Action& action)
{
    return action.m_dow == 0 && action.m_year != ScheduleFields::ANY;
}

// The year's first day; by UTC it may begin a day earlier.
QDate FirstOfYear(const Action& action)
{
    return QDate(std::clamp(action.m_year, 1, LAST_YEAR), 1, 1).addDays(-1);
}

} // namespace

QDate PastDays::Latest(const Action& action, bool isPlain)
{
    if (action.m_dow == 0 && !action.HasSpotDate())
        return {};
    const auto [place, isNew] = m_latest.try_emplace({DaysKey(action), isPlain});
    if (!isNew)
        return place->second;
    QDate last = action.m_hasTo ? std::min(m_last, action.m_to) : m_last;
    if (IsOfOneYear(action))
        last = std::min(last, FirstOfYear(action).addYears(1).addDays(2));
    QDate first = last.addYears(-MOST_YEARS);
    if (action.m_hasFrom)
        first = std::max(first, action.m_from);
    place->second = m_dueDays.LastDue(action, first, last, isPlain);
    return place->second;
}

std::optional<QDate> PastDays::Earliest(const Action& action)
{
    if (action.m_dow == 0 && !action.HasSpotDate())
        return QDate();
    if (!action.m_hasFrom && !IsOfOneYear(action))
        return std::nullopt;
    const QDate first = action.m_hasFrom ? action.m_from : FirstOfYear(action);
    if (first < m_last.addYears(-MOST_YEARS))
        return std::nullopt;
    return m_dueDays.FirstDue(action, first, m_last);
}

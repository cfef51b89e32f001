#include "StartOrder.h"

#include "DaysKey.h"
#include "PastDays.h"

#include <algorithm>
#include <utility>

namespace
{

constexpr qint64 BITS = 64;

bool HaveCommon(const std::vector<std::uint64_t>& left, const std::vector<std::uint64_t>& right)
{
    for (size_t i = 0; i < left.size(); ++i)
    {
        if ((left[i] & right[i]) != 0)
            return true;
    }
    return false;
}

} // namespace

StartOrder::StartOrder(DueDays& dueDays, const QDate& last, const QDate& first, const QDate& until)
    : m_dueDays(dueDays)
    , m_last(last)
    , m_first(first)
    , m_until(until)
{
}

QDate StartOrder::Needed(const std::vector<const Action*>& actions, int recentDays)
{
    // Those that start in one pass: what is prepared is asked for earlier. Of equal days one stands for all.
    std::map<std::pair<int, bool>, std::map<DaysKey, const Action*>> seconds;
    for (const Action* action : actions)
    {
        if (const std::optional<int> second = action->StartSecond(); second)
            seconds[{*second, action->IsPrepared()}].try_emplace(DaysKey(*action), action);
    }
    QDate needed;
    for (const auto& [second, days] : seconds)
    {
        std::vector<const Action*> group;
        for (const auto& [key, action] : days)
            group.push_back(action);
        const QDate date = group.size() > 1 ? NeededOf(group, recentDays) : QDate();
        if (date.isValid() && (!needed.isValid() || date < needed))
            needed = date;
    }
    return needed;
}

QDate StartOrder::NeededOf(const std::vector<const Action*>& group, int recentDays)
{
    std::vector<Days> recent;
    std::vector<Days> coming;
    for (const Action* action : group)
    {
        recent.push_back(DaysOf(*action, m_last.addDays(1 - recentDays), m_last));
        coming.push_back(DaysOf(*action, m_first, m_until));
    }
    QDate needed;
    for (size_t left = 0; left < group.size(); ++left)
    {
        for (size_t right = left + 1; right < group.size(); ++right)
        {
            // On other days they do not meet.
            if (recent[left] != recent[right] || !HaveCommon(coming[left], coming[right]))
                continue;
            const QDate date = LastApart(*group[left], *group[right]);
            if (date.isValid() && (!needed.isValid() || date < needed))
                needed = date;
        }
    }
    return needed;
}

StartOrder::Days StartOrder::DaysOf(const Action& action, const QDate& first, const QDate& last)
{
    const qint64 count = std::max<qint64>(first.daysTo(last) + 1, 0);
    Days days(static_cast<size_t>((count + BITS - 1) / BITS));
    for (qint64 day = 0; day < count; ++day)
    {
        if (m_dueDays.IsDue(action, first.addDays(day)))
            days[static_cast<size_t>(day / BITS)] |= std::uint64_t{1} << static_cast<unsigned>(day % BITS);
    }
    return days;
}

// The last day on which only one of them was due.
QDate StartOrder::LastApart(const Action& left, const Action& right)
{
    const QDate first = m_last.addYears(-PastDays::MOST_YEARS);
    for (QDate date = m_last; date >= first; date = date.addDays(-1))
    {
        if (m_dueDays.IsDue(left, date) != m_dueDays.IsDue(right, date))
            return date;
    }
    return {};
}

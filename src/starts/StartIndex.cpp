#include "StartIndex.h"

#include <algorithm>
#include <limits>

namespace
{

constexpr std::ptrdiff_t MOST_VISITS = 100'000; // besides those of a day; a day without any counts as one
const QDate FIRST_DATE(1970, 1, 1);

} // namespace

void StartIndex::Build(ActionList& actions)
{
    m_starts.clear();
    m_starts.reserve(static_cast<size_t>(actions.Size()));
    for (auto entry = actions.begin(); entry != actions.end(); ++entry)
    {
        const auto second = std::clamp<std::int64_t>((*entry)->SecondsAfterMidnight(), std::numeric_limits<int>::min(),
                                                     std::numeric_limits<int>::max());
        m_starts.push_back({static_cast<int>(second), entry});
    }
    std::ranges::stable_sort(m_starts, {}, &Start::second);
}

StartIndex::Starts::const_iterator StartIndex::FirstAfter(std::int64_t second) const
{
    return std::ranges::upper_bound(m_starts, second, {}, &Start::second);
}

bool StartIndex::Backwards(std::int64_t from_s, std::int64_t to_s, const Visit& visit) const
{
    std::ptrdiff_t left = MOST_VISITS;
    for (std::int64_t day = DayOf(to_s); !m_starts.empty() && day >= DayOf(from_s); --day)
    {
        if (left <= 0)
            return false;
        const std::int64_t last = day == DayOf(to_s) ? SecondOf(to_s) : DAY_S - 1;
        const std::int64_t before = day == DayOf(from_s) ? SecondOf(from_s) : -1;
        const auto begin = FirstAfter(before);
        const auto end = std::max(begin, FirstAfter(last));
        left -= 1 + (end - begin);
        for (auto start = end; start > begin;)
        {
            --start;
            visit(**start->entry, day * DAY_S + start->second);
        }
    }
    return true;
}

void StartIndex::Within(std::int64_t first_s, std::int64_t last_s, const EntryVisit& visit) const
{
    for (auto start = FirstAfter(first_s - 1); start != m_starts.end() && start->second <= last_s; ++start)
        visit(start->entry);
}

// Rounds down, also before 1970.
std::int64_t StartIndex::MomentOf(const Clock::Reading& reading)
{
    return reading.local_ms / MS_PER_S - (reading.local_ms % MS_PER_S < 0 ? 1 : 0);
}

std::int64_t StartIndex::Latest(int second, std::int64_t now_s)
{
    const std::int64_t today_s = DayOf(now_s) * DAY_S + second;
    return today_s > now_s ? today_s - DAY_S : today_s;
}

// Rounds down, also before 1970. No clock shows a day that the number does not hold.
std::int32_t StartIndex::DayOf(std::int64_t moment_s)
{
    const auto day = static_cast<std::int32_t>(moment_s / DAY_S);
    return moment_s % DAY_S < 0 ? day - 1 : day;
}

int StartIndex::SecondOf(std::int64_t moment_s)
{
    return static_cast<int>(moment_s - DayOf(moment_s) * DAY_S);
}

QDate StartIndex::DateOf(std::int64_t moment_s)
{
    return FIRST_DATE.addDays(DayOf(moment_s));
}

QTime StartIndex::TimeOf(std::int64_t moment_s)
{
    return QTime::fromMSecsSinceStartOfDay(SecondOf(moment_s) * static_cast<int>(MS_PER_S));
}

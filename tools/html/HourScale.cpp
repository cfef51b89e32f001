#include "HourScale.h"

#include <algorithm>
#include <iterator>
#include <set>

namespace
{

int Inside(int time_s)
{
    return std::clamp(time_s, 0, HourScale::DAY_S - 1);
}

std::set<int> Times(const std::vector<HourScale::Items>& days)
{
    std::set<int> times;
    for (int hour = 0; hour <= HourScale::HOURS; ++hour)
        times.insert(hour * HourScale::HOUR_S);
    for (const HourScale::Items& items : days)
    {
        for (const HourScale::Item& item : items)
            times.insert(Inside(item.time_s));
    }
    return times;
}

// How far one day has been placed.
struct Reached
{
    const HourScale::Items& items;
    size_t next = 0;
    double free = 0; // the first free row

    [[nodiscard]] bool IsNext(int time_s) const { return next < items.size() && Inside(items[next].time_s) == time_s; }
};

} // namespace

HourScale::HourScale(const std::vector<Items>& days)
{
    std::vector<Reached> all;
    std::ranges::transform(days, std::back_inserter(all), [](const Items& items) { return Reached{items}; });
    for (const int time_s : Times(days))
    {
        double top = 0;
        if (!m_knots.empty())
            top = m_knots.back().top + LEAST_ROWS * (time_s - m_knots.back().time_s) / HOUR_S;
        // An hour begins below everything of the one before; any other time only below what its own days have.
        const bool isHour = time_s % HOUR_S == 0;
        for (const Reached& day : all)
        {
            if (isHour || day.IsNext(time_s))
                top = std::max(top, day.free);
        }
        m_knots.push_back({time_s, top});
        for (Reached& day : all)
        {
            if (day.IsNext(time_s))
                day.free = top;
            while (day.IsNext(time_s))
                day.free += day.items[day.next++].rows;
        }
    }
}

double HourScale::Place(int time_s) const
{
    const int inside_s = std::clamp(time_s, 0, DAY_S);
    const auto next = std::ranges::lower_bound(m_knots, inside_s, {}, &Knot::time_s);
    if (next == m_knots.begin())
        return next->top;
    const auto before = next - 1;
    const double part = static_cast<double>(inside_s - before->time_s) / (next->time_s - before->time_s);
    return before->top + part * (next->top - before->top);
}

std::vector<double> HourScale::Places(const Items& items) const
{
    std::vector<double> places;
    places.reserve(items.size());
    for (size_t i = 0; i < items.size(); ++i)
    {
        const bool isBeside = i > 0 && Inside(items[i].time_s) == Inside(items[i - 1].time_s);
        places.push_back(isBeside ? places.back() + items[i - 1].rows : Place(Inside(items[i].time_s)));
    }
    return places;
}

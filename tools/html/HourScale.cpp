#include "HourScale.h"

#include <algorithm>

namespace
{

int HourOf(int time_s)
{
    return std::clamp(time_s / HourScale::HOUR_S, 0, HourScale::HOURS - 1);
}

} // namespace

HourScale::HourScale(const std::vector<Items>& days)
{
    std::array<int, HOURS> rows{};
    rows.fill(LEAST_ROWS);
    for (const Items& items : days)
    {
        std::array<int, HOURS> needed{};
        for (const Item& item : items)
            needed[static_cast<size_t>(HourOf(item.time_s))] += item.rows;
        for (size_t hour = 0; hour < needed.size(); ++hour)
            rows[hour] = std::max(rows[hour], needed[hour]);
    }
    for (size_t hour = 0; hour < rows.size(); ++hour)
        m_tops[hour + 1] = m_tops[hour] + rows[hour];
}

double HourScale::Place(int time_s) const
{
    const int inside_s = std::clamp(time_s, 0, DAY_S);
    const auto hour = static_cast<size_t>(HourOf(inside_s));
    const double part = static_cast<double>(inside_s - static_cast<int>(hour) * HOUR_S) / HOUR_S;
    return m_tops[hour] + part * (m_tops[hour + 1] - m_tops[hour]);
}

std::vector<double> HourScale::Places(const Items& items) const
{
    std::vector<double> places;
    places.reserve(items.size());
    double free = 0;
    for (const Item& item : items)
    {
        places.push_back(std::max(free, Place(item.time_s)));
        free = places.back() + item.rows;
    }
    // What the hour's end leaves no room for moves up again.
    double limit = Rows();
    for (size_t i = items.size(); i-- > 0;)
    {
        limit = std::min<double>(limit, m_tops[static_cast<size_t>(HourOf(items[i].time_s)) + 1]);
        places[i] = std::min(places[i], limit - items[i].rows);
        limit = places[i];
    }
    return places;
}

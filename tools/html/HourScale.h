#pragma once

#include <array>
#include <vector>

// The heights of the hours of a week, in rows. An hour is as high as its busiest day needs, so that no entry covers
// another, and equally high on all days, so that they can be compared.
class HourScale final
{
public:
    static constexpr int HOURS = 24;
    static constexpr int HOUR_S = 3600;
    static constexpr int DAY_S = HOURS * HOUR_S;
    static constexpr int LEAST_ROWS = 1; // of an hour

    // What stands somewhere in a day.
    struct Item
    {
        int time_s; // of the day
        int rows;   // that it needs
    };

    // Those of one day, in the order of their times.
    using Items = std::vector<Item>;

    explicit HourScale(const std::vector<Items>& days);

    // Where that second of the day lies, in rows from the top. Out of the day: its nearest end.
    [[nodiscard]] double Place(int time_s) const;

    // Where the items of one of the days begin: as near to their times as they can without covering one another, each
    // whole within its hour.
    [[nodiscard]] std::vector<double> Places(const Items& items) const;

    // The height of the whole day.
    [[nodiscard]] int Rows() const { return m_tops.back(); }

private:
    std::array<int, HOURS + 1> m_tops{}; // of each hour, and the end
};

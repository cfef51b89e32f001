#pragma once

#include <vector>

// The heights of the times of a week, in rows. The same time of day stands at the same height on all days, whatever
// else they have. What is later stands lower, and an hour is as high as its busiest day needs, so that no entry covers
// another.
class HourScale final
{
public:
    static constexpr int HOURS = 24;
    static constexpr int HOUR_S = 3600;
    static constexpr int DAY_S = HOURS * HOUR_S;
    static constexpr double LEAST_ROWS = 1; // of an hour

    // What stands somewhere in a day.
    struct Item
    {
        int time_s; // of the day
        int rows;   // that it needs
    };

    // Those of one day, in the order of their times.
    using Items = std::vector<Item>;

    // A time whose height is set; between two of them the scale is even.
    struct Knot
    {
        int time_s; // of the day
        double top; // in rows
    };

    explicit HourScale(const std::vector<Items>& days);

    // Where that second of the day lies, in rows from the top. Out of the day: its nearest end.
    [[nodiscard]] double Place(int time_s) const;

    // Where the items of one of the days begin: at the places of their times, and below one another where they have the
    // same time. Each stands whole within its hour.
    [[nodiscard]] std::vector<double> Places(const Items& items) const;

    // In the order of their times, from the day's beginning to its end.
    [[nodiscard]] const std::vector<Knot>& Knots() const { return m_knots; }

    // The height of the whole day.
    [[nodiscard]] double Rows() const { return m_knots.back().top; }

private:
    std::vector<Knot> m_knots;
};

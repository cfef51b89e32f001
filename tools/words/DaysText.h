#pragma once

#include <QDate>
#include <QString>

#include <cstdint>

class Action;

// Days and dates in words.
namespace DaysText
{

inline constexpr std::uint8_t EVERY_DAY = 0x7f;

// "every day", "Mondays to Fridays", "Saturdays and Sundays", "Mondays, Wednesdays and Fridays"; empty for no day.
// days: bit n is the C library's week-day number n.
[[nodiscard]] QString WeekDays(std::uint8_t days);

// The bit of date's day of the week.
[[nodiscard]] std::uint8_t WeekDayBit(const QDate& date);

// "25 December 2024".
[[nodiscard]] QString Date(const QDate& date);

// The action's spot date: "25 December of every year", "day 31 of every month of 2024"; empty where it has none.
[[nodiscard]] QString Spot(const Action& action);

// Whether no calendar has the action's spot date, as 30 February. The year 0, which is none, has gone by as any other.
[[nodiscard]] bool IsSpotImpossible(const Action& action);

// "Mondays, Wednesdays and Fridays".
[[nodiscard]] QString Joined(const QStringList& parts);

} // namespace DaysText

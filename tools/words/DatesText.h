#pragma once

#include <QDate>
#include <QString>
#include <QTime>

#include <set>

// On which dates something happens at the same time of day, in as few words as possible.
namespace DatesText
{

// "every day", "Mondays to Fridays", with ", 2024-06-03 to 2024-06-14" where that is not all of the span that begins
// at from_ms and ends before until_ms; otherwise "Wed 2024-05-15", or "12 dates: 2024-05-15, ...". time: of the day,
// which decides whether the first and the last date belong to the span.
[[nodiscard]] QString Of(const std::set<QDate>& dates, QTime time, qint64 from_ms, qint64 until_ms);

} // namespace DatesText

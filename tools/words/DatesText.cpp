#include "DatesText.h"

#include "DaysText.h"
#include "base/Moment.h"

#include <QStringList>

#include <numeric>

namespace
{

constexpr size_t FEWEST_FOR_RULE = 3; // dates that may be said as a rule; one or two are named
constexpr size_t MOST_NAMED = 6;

const QString DATE_FORMAT = QStringLiteral("yyyy-MM-dd");

using Dates = std::set<QDate>;

// The dates from first to last on one of those days of the week.
Dates Select(const QDate& first, const QDate& last, std::uint8_t days)
{
    Dates dates;
    for (QDate date = first; date <= last; date = date.addDays(1))
    {
        if ((DaysText::WeekDayBit(date) & days) != 0)
            dates.insert(date);
    }
    return dates;
}

std::uint8_t DaysOf(const Dates& dates)
{
    return std::accumulate(dates.begin(), dates.end(), std::uint8_t{0}, [](std::uint8_t days, const QDate& date) {
        return static_cast<std::uint8_t>(days | DaysText::WeekDayBit(date));
    });
}

QString Named(const Dates& dates)
{
    if (dates.size() == 1)
        return Moment::DateText(*dates.begin());
    QStringList names;
    for (const QDate& date : dates)
    {
        if (names.size() == static_cast<qsizetype>(MOST_NAMED))
        {
            names.append(QStringLiteral("..."));
            break;
        }
        names.append(date.toString(DATE_FORMAT));
    }
    return QStringLiteral("%1 dates: %2").arg(dates.size()).arg(names.join(QStringLiteral(", ")));
}

} // namespace

QString DatesText::Of(const std::set<QDate>& dates, QTime time, qint64 from_ms, qint64 until_ms)
{
    if (dates.size() < FEWEST_FOR_RULE)
        return Named(dates);
    std::uint8_t days = DaysOf(dates);
    const QDate first = *dates.begin();
    const QDate last = *dates.rbegin();
    const bool isContiguous = first.daysTo(last) + 1 == static_cast<qint64>(dates.size());
    const QDate spanFirst = Moment::LocalDate(from_ms).addDays(time < Moment::LocalTime(from_ms) ? 1 : 0);
    const QDate spanLast = Moment::LocalDate(until_ms).addDays(time < Moment::LocalTime(until_ms) ? 0 : -1);
    if (Select(spanFirst, spanLast, days) == dates)
        return isContiguous && first == spanFirst && last == spanLast ? DaysText::WeekDays(DaysText::EVERY_DAY)
                                                                      : DaysText::WeekDays(days);
    if (isContiguous)
        days = DaysText::EVERY_DAY;
    if (Select(first, last, days) != dates)
        return Named(dates);
    return QStringLiteral("%1, %2 to %3")
        .arg(DaysText::WeekDays(days), first.toString(DATE_FORMAT), last.toString(DATE_FORMAT));
}

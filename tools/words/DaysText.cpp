#include "DaysText.h"

#include "Action.h"
#include "text/ScheduleFields.h"

#include <QLocale>
#include <QStringList>

namespace
{

constexpr int DAYS_A_WEEK = 7;
constexpr int SHORTEST_RANGE = 3; // days that follow each other; fewer are named one by one
using ScheduleFields::ANY;

constexpr int LEAP_YEAR = 2000; // has every date that there is

// day: 1 for Monday, as people count.
std::uint8_t BitOf(int day)
{
    return static_cast<std::uint8_t>(1U << (day % DAYS_A_WEEK));
}

QString MonthName(int month)
{
    return QLocale::c().standaloneMonthName(month);
}

} // namespace

bool DaysText::IsSpotImpossible(const Action& action)
{
    if (action.m_day == ANY || action.m_month == ANY)
        return false;
    const int year = action.m_year == ANY || action.m_year == 0 ? LEAP_YEAR : action.m_year;
    return !QDate::isValid(year, action.m_month, action.m_day);
}

QString DaysText::Joined(const QStringList& parts)
{
    if (parts.size() < 2)
        return parts.join(QString());
    return parts.mid(0, parts.size() - 1).join(QStringLiteral(", ")) + QStringLiteral(" and ") + parts.last();
}

std::uint8_t DaysText::WeekDayBit(const QDate& date)
{
    return BitOf(date.dayOfWeek());
}

QString DaysText::WeekDays(std::uint8_t days)
{
    if (days == EVERY_DAY)
        return QStringLiteral("every day");
    QStringList names;
    int last = 0;
    bool isRange = true;
    for (int day = 1; day <= DAYS_A_WEEK; ++day)
    {
        if ((days & BitOf(day)) == 0)
            continue;
        isRange = isRange && (last == 0 || last + 1 == day);
        last = day;
        names.append(QLocale::c().standaloneDayName(day) + u's');
    }
    return isRange && names.size() >= SHORTEST_RANGE ? names.first() + QStringLiteral(" to ") + names.last()
                                                     : Joined(names);
}

QString DaysText::Date(const QDate& date)
{
    return QLocale::c().toString(date, QStringLiteral("d MMMM yyyy"));
}

QString DaysText::Spot(const Action& action)
{
    const bool hasDay = action.m_day != ANY;
    const bool hasMonth = action.m_month != ANY;
    const bool hasYear = action.m_year != ANY;
    if (!hasDay && !hasMonth)
        return hasYear ? QStringLiteral("every day of %1").arg(action.m_year) : QString();
    const QString month = hasMonth ? MonthName(action.m_month) : QStringLiteral("every month");
    if (hasDay && hasMonth)
        return QStringLiteral("%1 %2 %3")
            .arg(action.m_day)
            .arg(month, hasYear ? QString::number(action.m_year) : QStringLiteral("of every year"));
    QString text = (hasDay ? QStringLiteral("day %1 of ").arg(action.m_day) : QStringLiteral("every day of ")) + month;
    if (!hasYear)
        return text;
    return text + (hasMonth ? QStringLiteral(" %1") : QStringLiteral(" of %1")).arg(action.m_year);
}

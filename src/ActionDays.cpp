#include "ActionDays.h"

#include "Clock.h"
#include "text/ScheduleFields.h"
#include "text/TimeText.h"

#include <algorithm>

using ScheduleFields::ANY;
using ScheduleFields::DAYS_A_WEEK;

namespace
{

const QString SUMMARY_FORMAT = QStringLiteral("dd-MM-yyyy");

QString ValidityText(bool given, const QDate& date)
{
    return given ? date.toString(SUMMARY_FORMAT) : QStringLiteral("always");
}

bool Includes(int spot, int value)
{
    return spot == ANY || spot == value;
}

} // namespace

void ActionDays::ParseWeekDays(QLatin1String field)
{
    const int days = static_cast<int>(std::min<qsizetype>(field.size(), DAYS_A_WEEK));
    for (int i = 0; i < days; ++i)
    {
        // The field begins with Monday, the mask with Sunday.
        if (field[i] == QLatin1Char('1'))
            m_dow = static_cast<std::uint8_t>(m_dow | 1U << ((i + 1) % DAYS_A_WEEK));
    }
}

void ActionDays::ParseValidity(QLatin1String from, QLatin1String to)
{
    m_from = TimeText::ReadDate(from);
    m_hasFrom = m_from.isValid();
    m_to = TimeText::ReadDate(to);
    m_hasTo = m_to.isValid();
}

QString ActionDays::SpotText(int value)
{
    return value == ANY ? QStringLiteral("*") : QString::number(value);
}

QString ActionDays::FromText() const
{
    return ValidityText(m_hasFrom, m_from);
}

QString ActionDays::ToText() const
{
    return ValidityText(m_hasTo, m_to);
}

bool ActionDays::IsDueToday() const
{
    const bool isBounded = m_hasFrom || m_hasTo;
    return IsDue(Clock::LocalNow().tm_wday, isBounded ? Clock::LocalToday() : QDate(),
                 HasSpotDate() ? Clock::UtcToday() : QDate());
}

bool ActionDays::IsDueAt(const QDate& date, QTime time) const
{
    const int weekDay = date.dayOfWeek() % DAYS_A_WEEK;
    return IsDue(weekDay, date, HasSpotDate() ? Clock::UtcDateAt(date, time) : QDate());
}

// The spot date is that of UTC, unlike the day of week: an asymmetry that is required.
bool ActionDays::IsDue(int weekDay, const QDate& date, const QDate& utcDate) const
{
    const bool isSpotDay = HasSpotDate() && Includes(m_day, utcDate.day()) && Includes(m_month, utcDate.month()) &&
                           Includes(m_year, utcDate.year());
    return ((m_dow & (1U << static_cast<unsigned int>(weekDay))) != 0 || isSpotDay) && IsValid(date);
}

bool ActionDays::HasSpotDate() const
{
    return m_day != ANY || m_month != ANY || m_year != ANY;
}

bool ActionDays::IsValid(const QDate& date) const
{
    return !(m_hasFrom && date < m_from) && !(m_hasTo && date > m_to);
}

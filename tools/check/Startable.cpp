#include "Startable.h"

#include "base/Moment.h"
#include "engine/StartTime.h"
#include "meant/Meant.h"

#include <QTime>

bool Startable::Is(const Entry& entry)
{
    return entry.GetAction() != nullptr && entry.GetAction()->m_startTime.isValid() && Second(entry) > 0 &&
           MisreadTime(entry).isEmpty();
}

QString Startable::MisreadTime(const Entry& entry)
{
    const QString written = Meant::Time(entry.Field(ScheduleFields::FIELD_START_TIME));
    const QTime time = StartTime::Of(*entry.GetAction());
    return written == time.toString(QStringLiteral("HH:mm:ss")) ? QString() : written;
}

int Startable::Second(const Entry& entry)
{
    return QTime(0, 0).secsTo(entry.GetAction()->m_startTime);
}

QString Startable::FirstDay(const YearDays::Bits& days, const QDate& first)
{
    int day = 0;
    while (day + 1 < YearDays::DAYS && !days[static_cast<size_t>(day)])
        ++day;
    return Moment::DateText(first.addDays(day));
}

QString Startable::TimeText(int second)
{
    return QTime(0, 0).addSecs(second).toString(QStringLiteral("HH:mm:ss"));
}

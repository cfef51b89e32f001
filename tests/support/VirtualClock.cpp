#include "VirtualClock.h"

#include "Clock.h"

#include <QDateTime>

#include <ctime>
#include <stdexcept>

namespace
{

// The moment whose local form is parts, with daylight saving (1) or without (0); false when there is none.
bool FindMoment(const std::tm& parts, int daylightSaving, std::time_t& moment)
{
    std::tm wanted = parts;
    wanted.tm_isdst = daylightSaving;
    moment = std::mktime(&wanted);
    std::tm found{};
    ::localtime_r(&moment, &found);
    return found.tm_isdst == daylightSaving && found.tm_mday == parts.tm_mday && found.tm_hour == parts.tm_hour &&
           found.tm_min == parts.tm_min && found.tm_sec == parts.tm_sec;
}

std::time_t MomentOf(const std::tm& parts, VirtualClock::Occurrence occurrence)
{
    std::time_t summer = 0;
    std::time_t standard = 0;
    const bool isSummer = FindMoment(parts, 1, summer);
    const bool isStandard = FindMoment(parts, 0, standard);
    // Clocks are put back from summer time: it is the first of the two.
    const bool isTwice = isSummer && isStandard;
    if (!(isSummer || isStandard) || isTwice != (occurrence != VirtualClock::ONLY))
        throw std::invalid_argument("local time");
    if (isTwice)
        return occurrence == VirtualClock::FIRST ? summer : standard;
    return isSummer ? summer : standard;
}

} // namespace

VirtualClock::VirtualClock()
{
    SetLocal(QDate(2024, 5, 15), QTime(12, 0));
    Clock::SetSource([this] { return m_time_ms; }, [this] { return m_uptime_ms; });
}

VirtualClock::~VirtualClock()
{
    Clock::SetSource({});
}

void VirtualClock::SetLocal(const QDate& date, const QTime& time, Occurrence occurrence)
{
    std::tm parts{};
    parts.tm_year = date.year() - 1900;
    parts.tm_mon = date.month() - 1;
    parts.tm_mday = date.day();
    parts.tm_hour = time.hour();
    parts.tm_min = time.minute();
    parts.tm_sec = time.second();
    m_time_ms = static_cast<std::int64_t>(MomentOf(parts, occurrence)) * 1000 + time.msec();
}

void VirtualClock::SetLocal(const QTime& time)
{
    SetLocal(Clock::LocalToday(), time);
}

void VirtualClock::SetUtc(const QDate& date, const QTime& time)
{
    m_time_ms = QDateTime(date, time, Qt::UTC).toMSecsSinceEpoch();
}

#include "Clock.h"

#include <algorithm>
#include <array>
#include <limits>

namespace
{

constexpr std::int64_t MS_PER_S = 1000;
constexpr std::int64_t NS_PER_MS = 1'000'000;
constexpr int DAY_S = 86400;

static_assert(sizeof(std::time_t) == 8, "calendar time must carry past 2038");

// Two readings that are further apart than this were interrupted, and say nothing of one moment.
constexpr std::int64_t ONE_MOMENT_MS = 20;
constexpr int MOST_READINGS = 5;

// More than a day before and after: how far a time of today can be away. No zone changes its clocks there and back in
// half of that.
constexpr std::time_t HOUR_S = 3600;
constexpr std::array<std::time_t, 4> STEADY_SPAN_S{-26 * HOUR_S, -13 * HOUR_S, 13 * HOUR_S, 26 * HOUR_S};

const QDate FIRST_DATE(1970, 1, 1);

// Not by std::chrono: its reading is compiled into the library, which on a 32-bit processor ends in 2038.
std::int64_t SystemClock(clockid_t clock)
{
    std::timespec now{};
    // Fails for a clock that does not exist alone.
    static_cast<void>(::clock_gettime(clock, &now));
    return std::int64_t{now.tv_sec} * MS_PER_S + now.tv_nsec / NS_PER_MS;
}

std::int64_t SystemCalendar()
{
    return SystemClock(CLOCK_REALTIME);
}

// The monotonic clock stands still while the machine is suspended; this one does not.
std::int64_t SystemUptime()
{
    return SystemClock(CLOCK_BOOTTIME);
}

Clock::Source& CurrentSource()
{
    static Clock::Source source = SystemCalendar;
    return source;
}

Clock::Source& UptimeSource()
{
    static Clock::Source source = SystemUptime;
    return source;
}

// Milliseconds into the second, which run forward before 1970 too.
int Milliseconds(std::int64_t time_ms)
{
    const auto milliseconds = static_cast<int>(time_ms % MS_PER_S);
    return milliseconds < 0 ? milliseconds + static_cast<int>(MS_PER_S) : milliseconds;
}

// Rounds down, also before 1970.
std::time_t WholeSeconds(std::int64_t time_ms)
{
    const std::int64_t seconds = time_ms / MS_PER_S;
    return time_ms % MS_PER_S < 0 ? seconds - 1 : seconds;
}

std::tm Local(std::time_t time)
{
    std::tm parts{};
    // localtime_r alone may keep the time zone that it saw first.
    ::tzset();
    ::localtime_r(&time, &parts);
    return parts;
}

QDate DateOf(const std::tm& parts)
{
    return {parts.tm_year + 1900, parts.tm_mon + 1, parts.tm_mday};
}

} // namespace

void Clock::SetSource(Source calendar, Source uptime)
{
    const bool isVirtual = static_cast<bool>(calendar);
    CurrentSource() = isVirtual ? std::move(calendar) : SystemCalendar;
    if (uptime)
        UptimeSource() = std::move(uptime);
    else
        UptimeSource() = isVirtual ? CurrentSource() : SystemUptime;
}

Clock::Reading Clock::Read()
{
    std::int64_t uptime_ms = UptimeSource()();
    std::int64_t calendar_ms = CurrentSource()();
    for (int i = 1; i < MOST_READINGS; ++i)
    {
        const std::int64_t after_ms = UptimeSource()();
        if (after_ms - uptime_ms <= ONE_MOMENT_MS)
            break;
        uptime_ms = after_ms;
        calendar_ms = CurrentSource()();
    }
    const std::tm parts = Local(WholeSeconds(calendar_ms));
    const std::int64_t days = FIRST_DATE.daysTo(DateOf(parts));
    const int second = (parts.tm_hour * 60 + parts.tm_min) * 60 + std::min(parts.tm_sec, 59);
    return {(days * DAY_S + second) * MS_PER_S + Milliseconds(calendar_ms), calendar_ms, uptime_ms};
}

bool Clock::IsSteady(const Reading& now)
{
    // Of the zone that the reading was made in: what Local would look up again.
    const std::time_t moment = WholeSeconds(now.calendar_ms);
    std::tm parts{};
    ::localtime_r(&moment, &parts);
    for (const std::time_t away_s : STEADY_SPAN_S)
    {
        std::tm other{};
        const std::time_t then = moment + away_s;
        ::localtime_r(&then, &other);
        if (other.tm_gmtoff != parts.tm_gmtoff || other.tm_isdst != parts.tm_isdst)
            return false;
    }
    return true;
}

std::time_t Clock::Now()
{
    return WholeSeconds(CurrentSource()());
}

std::tm Clock::LocalNow()
{
    return Local(Now());
}

int Clock::IntoSecond_ms()
{
    return Milliseconds(CurrentSource()());
}

QTime Clock::TimeOfDay()
{
    const std::int64_t now_ms = CurrentSource()();
    const std::tm parts = Local(WholeSeconds(now_ms));
    return {parts.tm_hour, parts.tm_min, std::min(parts.tm_sec, 59), Milliseconds(now_ms)};
}

QDate Clock::LocalToday()
{
    return DateOf(LocalNow());
}

QDate Clock::UtcToday()
{
    const std::time_t now = Now();
    std::tm parts{};
    ::gmtime_r(&now, &parts);
    return DateOf(parts);
}

std::int64_t Clock::Uptime_ms()
{
    return UptimeSource()();
}

QDate Clock::UtcDateAt(const QDate& local, const QTime& time)
{
    std::tm parts{};
    parts.tm_year = local.year() - 1900;
    parts.tm_mon = local.month() - 1;
    parts.tm_mday = local.day();
    parts.tm_hour = time.hour();
    parts.tm_min = time.minute();
    parts.tm_sec = time.second();
    parts.tm_isdst = -1;
    const std::time_t moment = std::mktime(&parts);
    ::gmtime_r(&moment, &parts);
    return DateOf(parts);
}

int Clock::SecondsTo(int hour, int minute, int second)
{
    const std::time_t now = Now();
    std::tm parts = Local(now);
    parts.tm_hour = hour;
    parts.tm_min = minute;
    parts.tm_sec = second;
    const double seconds = std::difftime(std::mktime(&parts), now);
    return static_cast<int>(
        std::clamp<double>(seconds, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()));
}

int Clock::SecondsSince(QTime time)
{
    const QTime now = TimeOfDay();
    // The library would count no time at all from an invalid one.
    const QTime start = time.isValid() ? time : QTime(0, 0);
    const int seconds = start.msecsTo(now) / static_cast<int>(MS_PER_S);
    return now < start ? seconds + DAY_S : seconds;
}

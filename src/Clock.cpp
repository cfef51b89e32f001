#include "Clock.h"

#include <algorithm>
#include <limits>

namespace
{

constexpr std::int64_t MS_PER_S = 1000;
constexpr std::int64_t NS_PER_MS = 1'000'000;
constexpr int DAY_S = 86400;

static_assert(sizeof(std::time_t) == 8, "calendar time must carry past 2038");

// Not by std::chrono: its reading is compiled into the library, which on a 32-bit processor ends in 2038.
std::int64_t SystemClock()
{
    std::timespec now{};
    // Fails for a clock that does not exist alone.
    static_cast<void>(::clock_gettime(CLOCK_REALTIME, &now));
    return std::int64_t{now.tv_sec} * MS_PER_S + now.tv_nsec / NS_PER_MS;
}

Clock::Source& CurrentSource()
{
    static Clock::Source source = SystemClock;
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

void Clock::SetSource(Source source)
{
    CurrentSource() = source ? std::move(source) : SystemClock;
}

std::time_t Clock::Now()
{
    return WholeSeconds(CurrentSource()());
}

std::tm Clock::LocalNow()
{
    return Local(Now());
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

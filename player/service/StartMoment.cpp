#include "StartMoment.h"

#include "text/TimeText.h"

#include <QTime>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <ctime>
#include <vector>

namespace
{

constexpr std::int64_t MS_PER_S = 1000;

// Yesterday's, today's and tomorrow's.
constexpr std::array DAYS{-1, 0, 1};

enum Saving : int
{
    UNKNOWN = -1,
    STANDARD = 0,
    DAYLIGHT = 1,
};

bool Shows(std::time_t moment, const QTime& time)
{
    std::tm parts{};
    return ::localtime_r(&moment, &parts) != nullptr && parts.tm_hour == time.hour() && parts.tm_min == time.minute() &&
           parts.tm_sec == time.second();
}

std::time_t MomentOf(std::tm day, const QTime& time, Saving saving)
{
    day.tm_hour = time.hour();
    day.tm_min = time.minute();
    day.tm_sec = time.second();
    day.tm_isdst = saving;
    return ::mktime(&day);
}

// One or two where a clock is set back, and one in any case.
std::vector<std::time_t> MomentsOn(const std::tm& day, const QTime& time)
{
    std::vector<std::time_t> moments;
    for (const Saving saving : {STANDARD, DAYLIGHT})
    {
        const std::time_t moment = MomentOf(day, time, saving);
        if (Shows(moment, time))
            moments.push_back(moment);
    }
    if (moments.empty())
        moments.push_back(MomentOf(day, time, UNKNOWN));
    return moments;
}

} // namespace

std::optional<std::int64_t> StartMoment::Nearest_ms(const QString& time, std::int64_t now_ms)
{
    const QTime wanted = TimeText::ReadTime(time);
    if (!wanted.isValid())
        return std::nullopt;
    // localtime_r alone may keep the time zone that it saw first.
    ::tzset();
    const auto now_s = static_cast<std::time_t>(now_ms / MS_PER_S);
    std::tm today{};
    if (::localtime_r(&now_s, &today) == nullptr)
        return std::nullopt;

    std::optional<std::int64_t> nearest_ms;
    for (const int offset : DAYS)
    {
        std::tm day = today;
        day.tm_mday += offset;
        for (const std::time_t moment : MomentsOn(day, wanted))
        {
            const std::int64_t moment_ms = std::int64_t{moment} * MS_PER_S;
            if (!nearest_ms || std::abs(moment_ms - now_ms) < std::abs(*nearest_ms - now_ms))
                nearest_ms = moment_ms;
        }
    }
    return nearest_ms;
}

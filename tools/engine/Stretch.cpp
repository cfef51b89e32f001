#include "Stretch.h"

#include "base/Moment.h"

#include <algorithm>
#include <ctime>

namespace
{

std::tm Local(std::time_t time)
{
    std::tm parts{};
    ::localtime_r(&time, &parts);
    return parts;
}

bool IsSameSeason(const std::tm& left, const std::tm& right)
{
    return left.tm_gmtoff == right.tm_gmtoff && left.tm_isdst == right.tm_isdst;
}

// The first second after from, up to last, whose season is another; last is known to be one.
std::time_t FirstOther(std::time_t from, std::time_t last)
{
    const std::tm before = Local(from);
    while (last - from > 1)
    {
        const std::time_t middle = from + (last - from) / 2;
        (IsSameSeason(before, Local(middle)) ? from : last) = middle;
    }
    return last;
}

} // namespace

Stretch Stretch::From(qint64 moment_ms)
{
    const auto begin = static_cast<std::time_t>(moment_ms / Moment::MS_PER_S);
    const std::tm now = Local(begin);
    const std::time_t sinceMidnight = now.tm_hour * 3600 + now.tm_min * 60 + now.tm_sec;
    const std::time_t localEnd = begin - sinceMidnight + Moment::DAY_S;
    const std::time_t utcEnd = (begin / Moment::DAY_S + 1) * Moment::DAY_S;
    std::time_t end = std::min(localEnd, utcEnd);
    if (!IsSameSeason(now, Local(end - 1)))
        end = FirstOther(begin, end - 1);
    const std::tm after = Local(end);
    const bool isDayEnd = after.tm_mday != now.tm_mday;
    return {moment_ms, qint64{end} * Moment::MS_PER_S, qint64{begin - sinceMidnight} * Moment::MS_PER_S, isDayEnd};
}

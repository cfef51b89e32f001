#include "ClockChange.h"

#include "Stretch.h"
#include "base/Moment.h"

#include <ctime>

namespace
{

qint64 OffsetOf(qint64 moment_ms)
{
    const auto seconds = static_cast<std::time_t>(moment_ms / Moment::MS_PER_S);
    std::tm parts{};
    ::localtime_r(&seconds, &parts);
    return parts.tm_gmtoff;
}

} // namespace

std::vector<ClockChange> ClockChange::Between(qint64 from_ms, qint64 until_ms)
{
    std::vector<ClockChange> changes;
    // A change begins a stretch.
    qint64 moment_ms = Stretch::From(from_ms).end_ms;
    while (moment_ms < until_ms)
    {
        const qint64 shift_s = OffsetOf(moment_ms) - OffsetOf(moment_ms - Moment::MS_PER_S);
        if (shift_s != 0)
            changes.push_back({moment_ms, shift_s});
        moment_ms = Stretch::From(moment_ms).end_ms;
    }
    return changes;
}

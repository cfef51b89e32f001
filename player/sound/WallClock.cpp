#include "sound/WallClock.h"

#include <chrono>

qint64 WallClock::Now_ns()
{
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::nanoseconds>(now).count();
}

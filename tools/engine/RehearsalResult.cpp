#include "RehearsalResult.h"

#include <algorithm>

int RehearsalResult::Rejected() const
{
    return static_cast<int>(std::ranges::count_if(lines, [](const ScheduleLine& line) { return line.IsRejected(); }));
}

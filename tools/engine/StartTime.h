#pragma once

#include "Action.h"

#include <QTime>

// When an action with a start time that need not exist starts.
namespace StartTime
{

// The time of day for which the daemon waits: hours, minutes and seconds that are out of range carry over. Invalid
// where that is on another day, as for 24:00:00.
[[nodiscard]] QTime Of(const Action& action);

// Whether the time is on the next day, but so early on it that what is prepared ahead is asked for on the evening
// before.
[[nodiscard]] bool IsAskedForTheEveningBefore(const Action& action);

// Whether the time does not exist, and the action may start late: it then counts as due at once.
[[nodiscard]] bool IsAtEveryLoad(const Action& action);

} // namespace StartTime

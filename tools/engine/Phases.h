#pragma once

#include "Event.h"

#include "base/Moment.h"

#include <QString>

class Action;
class RehearsalClock;

// The far pass comes every few seconds from the daemon's start on. Nobody knows at which ones, so a start that is
// found only within less than such a period comes by chance.
namespace Phases
{

// That period. What ends so long before its start is found by each of the passes.
inline constexpr int PERIOD_S = Event::PHASES_MS / static_cast<int>(Moment::MS_PER_S);

// Around when a start may be found, and since when its task has been free to be started.
struct Search
{
    qint64 around_ms; // a full second
    qint64 free_ms;
};

// The phases of the far timer in which a far pass finds action, in milliseconds of Event::PHASES_MS. Asks the action
// itself, second by second. clock: that of the rehearsal; shows the same moment afterwards.
[[nodiscard]] int Of(const Action& action, RehearsalClock& clock, const Search& search);

// "in 1 of 3 cases, depending on when the daemon was started".
[[nodiscard]] QString Text(int phases_ms);

} // namespace Phases

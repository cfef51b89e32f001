#pragma once

#include "Action.h"

#include <QTime>

#include <cstdint>

// When an action starts, also if its start time does not exist.
namespace StartTime
{

// The time of day for which the daemon waits: hours, minutes and seconds that are out of range carry over. Invalid
// where that is on another day, as for 24:00:00.
[[nodiscard]] QTime Of(const Action& action);

// What becomes of an action at its start time, on each day on which it is due and at which no clock is changed.
enum class Fate : std::uint8_t
{
    COMES,
    BY_CHANCE,      // it comes so soon after midnight that a far pass rarely sees it ahead
    EVENING_BEFORE, // it is none of the day, and is requested on the evening before the next midnight
    NEVER,
};

[[nodiscard]] Fate FateOf(const Action& action);

// How many milliseconds after midnight the time is: as many as the phases of the far timer that find it. BY_CHANCE.
[[nodiscard]] int Phases_ms(const Action& action);

// Whether the time is so early on the next day that messages and playlists are requested on the evening before.
[[nodiscard]] bool IsAskedForTheEveningBefore(const Action& action);

// The time from which the daemon counts how late the action is: midnight where the start time does not exist.
[[nodiscard]] QTime ForLateness(const Action& action);

// Whether that is midnight or just after it, and the action may start late: it is found all the same, once after a
// load, and joined by a load soon after.
[[nodiscard]] bool IsFoundAtMidnight(const Action& action);

enum class Answer : std::uint8_t
{
    NO,
    PERHAPS,
    YES,
};

// The same of an action whose tracks may not be known: whether a playlist may start late depends on them.
[[nodiscard]] Answer FoundAtMidnight(const Action& action, bool areTracksKnown);

// Whether that is midnight, and the action is one of those that a load starts when they should be in force.
[[nodiscard]] bool IsForcedByEveryLoad(const Action& action);

} // namespace StartTime

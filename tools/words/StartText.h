#pragma once

#include <QString>

class Action;

// Start times in words, the same in every command.
namespace StartText
{

// "08:30:00"; of a time that is none, as the line gives it: "24:00:00".
[[nodiscard]] QString Time(const Action& action);

// What the action does instead of starting at its time on each of its days: "never starts", "starts only when the
// schedule is loaded". Empty where it starts then. areTracksKnown: whether the tracks of a playlist are its own.
[[nodiscard]] QString Fate(const Action& action, bool areTracksKnown = true);

// Of a time that does not exist, and counts as one all the same: "it may start at midnight, once after a load"; empty
// where nothing comes of it.
[[nodiscard]] QString FoundAtMidnight(const Action& action, bool areTracksKnown = true);

} // namespace StartText

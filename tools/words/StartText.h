#pragma once

#include <QString>

class Action;

// Start times in words, the same in every command.
namespace StartText
{

// "08:30:00"; of a time that is none, as the line gives it: "24:00:00".
[[nodiscard]] QString Time(const Action& action);

// What the action does instead of starting at its time on each of its days: "never starts", "starts only when the
// schedule is loaded". Empty where it starts then.
[[nodiscard]] QString Fate(const Action& action);

} // namespace StartText

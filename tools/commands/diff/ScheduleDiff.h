#pragma once

#include <QString>

struct RehearsalResult;

// How the starts of two schedules differ, whatever their lines look like.
namespace ScheduleDiff
{

// A line for each change, in order of time: "+" for a start that comes, "-" for one that goes, "~" for one that comes
// at another time of the same day; changes that are the same on several dates share a line. Empty where all starts
// are the same. Both have the same span.
[[nodiscard]] QString Text(const RehearsalResult& before, const RehearsalResult& after);

} // namespace ScheduleDiff

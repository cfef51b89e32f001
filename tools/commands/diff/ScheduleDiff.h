#pragma once

#include "EndState.h"
#include "TaskPhrases.h"

#include <QString>

struct RehearsalResult;

// How what two schedules ask for differs, whatever their lines look like.
namespace ScheduleDiff
{

// One schedule's rehearsal; both have the same span.
struct Side
{
    const RehearsalResult& run;
    const EndState& inForce; // of its requests
    const TaskPhrases::Map& phrases;
};

// A line for each change, in order of time: "+" for a start that comes, "-" for one that goes, "~" for one that comes
// at another time of the same day, "!" for what is asked for at the same time in another way or order, with lines that
// show how; changes that are the same on several dates share a line. Then what is in force at the end with one of the
// two only. Empty where all requests are the same, those before the span included.
[[nodiscard]] QString Text(const Side& before, const Side& after);

} // namespace ScheduleDiff

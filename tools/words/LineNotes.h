#pragma once

#include "engine/RehearsalResult.h"

#include <QString>

#include <vector>

// What the events of a rehearsal do not tell of the lines of its schedule.
namespace LineNotes
{

struct Note
{
    int line;
    QString text; // a clause whose subject is the line
};

// The lines that do nothing on any day, or something else than to start at their time on each of their days: those
// which an accidental comment sign hides, those that are never due, and those whose time comes never or by chance.
// Not those that the daemon rejects.
[[nodiscard]] std::vector<Note> Of(const std::vector<ScheduleLine>& lines);

// The other lines of which run has no event: they are not due in its span.
[[nodiscard]] std::vector<int> NotDue(const RehearsalResult& run);

// "line 1", "lines 1, 4 to 9".
[[nodiscard]] QString Numbers(const std::vector<int>& lines);

} // namespace LineNotes

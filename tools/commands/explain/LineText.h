#pragma once

#include "engine/ScheduleLine.h"

#include <QString>

// A line of a schedule in words.
namespace LineText
{

// A line that is not rejected, in sentences; without a line feed, and harmless on a terminal. areTracksKnown: the
// playlist is the one that the line means. line: of that workspace. Starts the line's action, which is of no use
// afterwards.
[[nodiscard]] QString Of(const Workspace& workspace, const ScheduleLine& line, bool areTracksKnown);

} // namespace LineText

#pragma once

#include "LinePhrases.h"
#include "engine/ClockChange.h"
#include "engine/Event.h"

#include <QString>

#include <vector>

// What happens to entries when the clocks change.
namespace ClockChangeText
{

// A heading and a line for each entry that the change concerns; empty where it concerns none. events: of a rehearsal
// that includes the change, a day around it.
[[nodiscard]] QString Of(const ClockChange& change, const std::vector<Event>& events, LinePhrases& phrases);

} // namespace ClockChangeText

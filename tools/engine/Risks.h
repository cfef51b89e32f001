#pragma once

#include "Event.h"

#include <vector>

// What a peer that does not answer would make the daemon miss.
namespace Risks
{

// Marks the starts that are at risk. While the daemon waits for one peer it starts nothing else; what can come late, as
// a playlist, still comes. events: in the order of their moments.
void Mark(std::vector<Event>& events);

} // namespace Risks

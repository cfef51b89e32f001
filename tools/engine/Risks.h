#pragma once

#include "Event.h"

#include <vector>

// What a peer that does not answer would make the daemon miss.
namespace Risks
{

// Marks the starts at risk: while the daemon waits for one peer it starts nothing else. What can start late, such as a
// playlist, is not at risk. events: in the order of their moments.
void Mark(std::vector<Event>& events);

} // namespace Risks

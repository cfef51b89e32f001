#pragma once

#include "Event.h"

// What a peer that does not answer would make the daemon miss.
class Risks final
{
public:
    // Marks a start at risk: while the daemon waits for one peer it starts nothing else. What can start late, such as a
    // playlist, is not at risk. Called once for each event, in the order of their moments.
    void Mark(Event& event);

private:
    // The request that may keep the daemon waiting longest, of those so far.
    int m_line = 0;
    qint64 m_until_ms = 0;
};

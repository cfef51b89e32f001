#include "Patience.h"

#include "engine/TaskRequests.h"

Patience::Patience(const Entry& entry)
{
    // What was started once is not as it was: the entry keeps its own.
    const ScheduleLine line = ScheduleLine::Read(entry.line.text);
    for (const Request& request : TaskRequests::Of(*line.action))
    {
        if (request.timeout_ms == 0)
            continue; // nobody is asked
        m_longest_ms += request.timeout_ms;
        m_peers.insert(request.peer);
    }
}

#include "Patience.h"

#include "base/Moment.h"
#include "engine/TaskRequests.h"
#include "text/Rejection.h"

Patience::Patience(TaskRequests& peers, const Entry& entry)
{
    QList<Request> requests;
    try
    {
        // What was started once is not as it was: the entry keeps its own.
        Action action(entry.line.text);
        requests = peers.Of(action);
    }
    catch (const Rejection&)
    {
        return; // its playlist has gone since the line was read
    }
    m_longest_s = static_cast<int>(Request::Longest_ms(requests) / Moment::MS_PER_S);
    for (const Request& request : requests)
    {
        // An announcement asks nobody.
        if (request.timeout_ms != 0)
            m_peers.insert(request.peer);
    }
}

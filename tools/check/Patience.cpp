#include "Patience.h"

#include "base/Moment.h"
#include "engine/TaskRequests.h"

Patience::Patience(const Workspace& workspace, const Entry& entry)
{
    // What was started once is not as it was: the entry keeps its own.
    const ScheduleLine line = ScheduleLine::Read(workspace, entry.line.text);
    const QList<Request> requests = TaskRequests::Of(workspace, *line.action);
    m_longest_s = static_cast<int>(Request::Longest_ms(requests) / Moment::MS_PER_S);
    for (const Request& request : requests)
    {
        // An announcement asks nobody.
        if (request.timeout_ms != 0)
            m_peers.insert(request.peer);
    }
}

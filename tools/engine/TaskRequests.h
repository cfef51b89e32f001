#pragma once

#include "Request.h"
#include "Workspace.h"

#include <QList>

class Action;

// What tasks ask for. As long as an object lives there are peers that accept everything; actions may be made meanwhile.
// Only one may live, and no rehearsal beside it.
class TaskRequests final
{
public:
    // workspace: of the actions; outlives the object.
    explicit TaskRequests(const Workspace& workspace);
    ~TaskRequests();

    TaskRequests(const TaskRequests&) = delete;
    TaskRequests& operator=(const TaskRequests&) = delete;

    // Starts the action, in time, and gives its requests in order. It is started nowhere else, neither before nor
    // after. Throws ToolError when it cannot be listened to.
    [[nodiscard]] QList<Request> Of(Action& action);

    // The same for one action of that workspace alone.
    [[nodiscard]] static QList<Request> Of(const Workspace& workspace, Action& action);

private:
    const Workspace::Use m_use;
    QList<Request> m_requests; // since the start
};

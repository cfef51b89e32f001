#pragma once

#include "Request.h"

#include <QList>

class Action;
class Workspace;

// What an action's task asks for.
namespace TaskRequests
{

// Starts the action, which was made in that workspace, in time, before peers that accept everything, and gives its
// requests in order. The action is started nowhere else, neither before nor after. No rehearsal may live.
[[nodiscard]] QList<Request> Of(const Workspace& workspace, Action& action);

} // namespace TaskRequests

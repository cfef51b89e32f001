#pragma once

#include "Request.h"

#include <QList>

class Action;

// What an action's task asks for.
namespace TaskRequests
{

// Starts the action, in time, before peers that accept everything, and gives its requests in order. The action is
// started nowhere else, neither before nor after. No rehearsal may live.
[[nodiscard]] QList<Request> Of(Action& action);

} // namespace TaskRequests

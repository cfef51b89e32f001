#pragma once

#include "PeerRecorder.h"
#include "Task.h"

#include <QStringList>

// What may go over the bus at all, whatever a schedule says.
namespace RequestRules
{

// The methods that some task asks for.
QStringList Methods();

// Notes a finding unless the request has its peer, its types, its time-out and values that its peer can have asked for.
void Check(const PeerRequest& request);

// The last part of the name of the service that a task of this type asks; empty where it asks nobody.
QString PeerOf(TaskType type);

} // namespace RequestRules

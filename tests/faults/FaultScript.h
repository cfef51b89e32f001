#pragma once

#include "FaultRig.h"
#include "FaultTable.h"
#include "PeerSignal.h"

// What the device is told ahead of a request, so that the fault happens to it.
namespace FaultScript
{

// signal: what the daemon listens to of that peer; null where there is none, and the fault is none of signals.
void Prepare(const Fault& fault, const Request& request, const PeerSignal* signal, FaultRig& rig);

// The peer goes away: at once, or, where another request comes first, with its answer.
void LosePeer(const Request& request, FaultRig& rig);

} // namespace FaultScript

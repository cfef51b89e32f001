#include "CpuFreqManager.h"

#include "PeerCall.h"
#include "PeerProxies.h"

#include <CpuFreqManagerProxy.h>

PeerReply CpuFreqManager::SetFreq(int frequencyMHz)
{
    return PeerCall::Send(PeerProxies::m_cpuFreqManProxy, QString::fromLatin1(SET_FREQ), {frequencyMHz});
}

#include "SharedProxies.h"

#include "Peers.h"
#include "Scheduler.h"

#include <ConfigProxy.h>
#include <CpuFreqManagerProxy.h>
#include <GpsManagerProxy.h>
#include <LightManagerProxy.h>
#include <NetworkManagerProxy.h>
#include <PhotoManagerProxy.h>
#include <SoundManagerProxy.h>
#include <UpdateManagerProxy.h>

#include <utility>

namespace
{

template <typename Proxy> void DeleteOne(Proxy*& proxy)
{
    delete std::exchange(proxy, nullptr);
}

} // namespace

void SharedProxies::Delete()
{
    DeleteOne(Scheduler::m_configManProxy);
    DeleteOne(Scheduler::m_updateManProxy);
    DeleteOne(Scheduler::m_soundManProxy);
    DeleteOne(Scheduler::m_photoManProxy);
    DeleteOne(Scheduler::m_lightManProxy);
    DeleteOne(Scheduler::m_cpuFreqManProxy);
    DeleteOne(Scheduler::m_gpsManProxy);
    DeleteOne(Scheduler::m_networkManProxy);
}

void SharedProxies::Renew()
{
    Delete();
    Peers::CreateProxies();
}

#include "UpdateManager.h"

#include "PeerProxies.h"

const UpdateManagerProxy* UpdateManager::Signals()
{
    return PeerProxies::m_updateManProxy;
}

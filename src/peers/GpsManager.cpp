#include "GpsManager.h"

#include "PeerCall.h"
#include "PeerProxies.h"

#include <GpsManagerProxy.h>

PeerReply GpsManager::SetEnabled(bool enabled)
{
    return PeerCall::Send(PeerProxies::m_gpsManProxy, QString::fromLatin1(SET_ENABLED), {enabled});
}

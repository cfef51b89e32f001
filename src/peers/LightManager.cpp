#include "LightManager.h"

#include "PeerCall.h"
#include "PeerProxies.h"

#include <LightManagerProxy.h>

PeerReply LightManager::SetIntensity(unsigned int intensity)
{
    return PeerCall::Send(PeerProxies::m_lightManProxy, QString::fromLatin1(SET_INTENSITY), {intensity});
}

PeerReply LightManager::Switch(bool on)
{
    return PeerCall::Send(PeerProxies::m_lightManProxy, QString::fromLatin1(SWITCH), {on});
}

#include "NetworkManager.h"

#include "PeerCall.h"
#include "PeerProxies.h"

#include <NetworkManagerProxy.h>

PeerReply NetworkManager::EnableLan()
{
    // DHCP needs none of the three texts of a fixed address.
    const QVariantList dhcp{true, QString(), QString(), QString()};
    return PeerCall::Send(PeerProxies::m_networkManProxy, QString::fromLatin1(ENABLE_LAN), dhcp);
}

PeerReply NetworkManager::DisableLan()
{
    return PeerCall::Send(PeerProxies::m_networkManProxy, QString::fromLatin1(DISABLE_LAN));
}

#include "PeerPresence.h"

#include "peers/CpuFreqManager.h"
#include "peers/GpsManager.h"
#include "peers/LightManager.h"
#include "peers/NetworkManager.h"
#include "peers/PhotoManager.h"
#include "peers/SoundManager.h"
#include "peers/UpdateManager.h"

#include <array>

namespace
{

constexpr std::array SERVICES{
    SoundManager::SERVICE, PhotoManager::SERVICE,   LightManager::SERVICE,  CpuFreqManager::SERVICE,
    GpsManager::SERVICE,   NetworkManager::SERVICE, UpdateManager::SERVICE,
};

} // namespace

std::vector<PeerPresence::Peer> PeerPresence::Of(const QStringList& serviceNames)
{
    std::vector<Peer> peers;
    for (const char* service : SERVICES)
    {
        const QString name = QString::fromLatin1(service);
        peers.push_back({name.section(u'.', -1), serviceNames.contains(name)});
    }
    return peers;
}

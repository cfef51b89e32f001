#include "Peers.h"

#include "CpuFreqManager.h"
#include "GpsManager.h"
#include "LightManager.h"
#include "NetworkManager.h"
#include "PeerOwner.h"
#include "PeerProxies.h"
#include "PeerWaits.h"
#include "PhotoManager.h"
#include "SoundManager.h"
#include "SoundSignals.h"
#include "UpdateManager.h"

#include <ConfigProxy.h>
#include <CpuFreqManagerProxy.h>
#include <GpsManagerProxy.h>
#include <LightManagerProxy.h>
#include <NetworkManagerProxy.h>
#include <PhotoManagerProxy.h>
#include <SoundManagerProxy.h>
#include <UpdateManagerProxy.h>

#include <QDBusConnection>

#include <utility>

namespace
{

// The configuration manager, which nobody asks.
constexpr const char* CONFIG_SERVICE = "com.kestrelix.ozna.configmanager";
constexpr const char* CONFIG_PATH = "/com/kestrelix/ozna/configmanager/configobj";
constexpr int CONFIG_TIMEOUT_MS = 2000;

template <typename Proxy> void Create(Proxy*& proxy, const char* service, const char* path)
{
    proxy = new Proxy(QString::fromLatin1(service), QString::fromLatin1(path), QDBusConnection::sessionBus(), nullptr);
}

template <typename Proxy> void Create(Proxy*& proxy, const char* service, const char* path, int timeout_ms)
{
    Create(proxy, service, path);
    proxy->setTimeout(timeout_ms);
}

// Of a peer at which work goes on after its answer.
void Follow(QDBusAbstractInterface* proxy)
{
    if (proxy->connection().isConnected())
        new PeerOwner(proxy);
}

template <typename Proxy> void Delete(Proxy*& proxy)
{
    delete std::exchange(proxy, nullptr);
}

} // namespace

void Peers::CreateProxies(const std::function<void()>& onUpdateManager)
{
    PeerWaits::Clear();
    Create(PeerProxies::m_configManProxy, CONFIG_SERVICE, CONFIG_PATH, CONFIG_TIMEOUT_MS);
    Create(PeerProxies::m_updateManProxy, UpdateManager::SERVICE, UpdateManager::PATH);
    onUpdateManager();
    PeerProxies::m_updateManProxy->setTimeout(UpdateManager::TIMEOUT_MS);
    Create(PeerProxies::m_soundManProxy, SoundManager::SERVICE, SoundManager::PATH, SoundManager::TIMEOUT_MS);
    new SoundSignals(PeerProxies::m_soundManProxy);
    Follow(PeerProxies::m_soundManProxy);
    Create(PeerProxies::m_photoManProxy, PhotoManager::SERVICE, PhotoManager::PATH, PhotoManager::TIMEOUT_MS);
    Follow(PeerProxies::m_photoManProxy);
    Create(PeerProxies::m_lightManProxy, LightManager::SERVICE, LightManager::PATH);
    Create(PeerProxies::m_cpuFreqManProxy, CpuFreqManager::SERVICE, CpuFreqManager::PATH, CpuFreqManager::TIMEOUT_MS);
    Create(PeerProxies::m_gpsManProxy, GpsManager::SERVICE, GpsManager::PATH, GpsManager::FIRST_TIMEOUT_MS);
    Create(PeerProxies::m_networkManProxy, NetworkManager::SERVICE, NetworkManager::PATH);
    PeerProxies::m_gpsManProxy->setTimeout(GpsManager::TIMEOUT_MS);
}

void Peers::DeleteProxies()
{
    Delete(PeerProxies::m_configManProxy);
    Delete(PeerProxies::m_updateManProxy);
    Delete(PeerProxies::m_soundManProxy);
    Delete(PeerProxies::m_photoManProxy);
    Delete(PeerProxies::m_lightManProxy);
    Delete(PeerProxies::m_cpuFreqManProxy);
    Delete(PeerProxies::m_gpsManProxy);
    Delete(PeerProxies::m_networkManProxy);
}

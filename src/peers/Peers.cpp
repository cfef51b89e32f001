#include "Peers.h"

#include "PeerOwner.h"
#include "PeerWaits.h"
#include "Scheduler.h"

#include <ConfigProxy.h>
#include <CpuFreqManagerProxy.h>
#include <GpsManagerProxy.h>
#include <LightManagerProxy.h>
#include <NetworkManagerProxy.h>
#include <PhotoManagerProxy.h>
#include <SoundManagerProxy.h>
#include <UpdateManagerProxy.h>

#include <QDBusConnection>

#include <stdexcept>
#include <utility>

namespace
{

// Where a manager is on the session bus.
struct Address
{
    const char* service;
    const char* path;
};

// How long a call to a manager may take. Where none is given, the D-Bus library's own time-out stays.
constexpr int CONFIG_TIMEOUT_MS = 2000;
constexpr int UPDATE_TIMEOUT_MS = 2000;
constexpr int SOUND_TIMEOUT_MS = 3000;
constexpr int PHOTO_TIMEOUT_MS = 5000;
constexpr int CPU_FREQ_TIMEOUT_MS = 2000;
constexpr int GPS_FIRST_TIMEOUT_MS = 2000;
constexpr int GPS_FINAL_TIMEOUT_MS = 5000; // once all proxies stand

constexpr Address CONFIG_MANAGER{"com.kestrelix.ozna.configmanager", "/com/kestrelix/ozna/configmanager/configobj"};
constexpr Address UPDATE_MANAGER{"com.kestrelix.ozna.updatemanager", "/com/kestrelix/ozna/updatemanager/updateobj"};
constexpr Address SOUND_MANAGER{"com.kestrelix.ozna.soundmanager", "/com/kestrelix/ozna/soundmanager/soundobj"};
constexpr Address PHOTO_MANAGER{"com.kestrelix.ozna.photomanager", "/com/kestrelix/ozna/photomanager/photoobj"};
constexpr Address LIGHT_MANAGER{"com.kestrelix.ozna.lightmanager", "/com/kestrelix/ozna/lightmanager/lightobj"};
constexpr Address CPU_FREQ_MANAGER{"com.kestrelix.ozna.freqmanager", "/com/kestrelix/ozna/freqmanager/freqobj"};
constexpr Address GPS_MANAGER{"com.kestrelix.ozna.gpsmanager", "/com/kestrelix/ozna/gpsmanager/gpsobj"};
constexpr Address NETWORK_MANAGER{"com.kestrelix.ozna.networkmanager", "/com/kestrelix/ozna/networkmanager/netobj"};

template <typename Proxy> void Create(Proxy*& proxy, const Address& address)
{
    proxy = new Proxy(QString::fromLatin1(address.service), QString::fromLatin1(address.path),
                      QDBusConnection::sessionBus(), nullptr);
}

template <typename Proxy> void Create(Proxy*& proxy, const Address& address, int timeout_ms)
{
    Create(proxy, address);
    proxy->setTimeout(timeout_ms);
}

// The bus delivers a signal from the moment on at which something is connected to it, which is too late for one that
// comes right behind the answer of a call; and it does so as long as something stays connected.
template <typename Proxy, typename... Signals> void Subscribe(Proxy* proxy, Signals... signals)
{
    const auto subscribe = [proxy](auto signal) {
        if (!QObject::connect(proxy, signal, proxy, [] {}))
            throw std::runtime_error("peer signals");
    };
    (subscribe(signals), ...);
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
    Create(Scheduler::m_configManProxy, CONFIG_MANAGER, CONFIG_TIMEOUT_MS);
    Create(Scheduler::m_updateManProxy, UPDATE_MANAGER);
    onUpdateManager();
    Scheduler::m_updateManProxy->setTimeout(UPDATE_TIMEOUT_MS);
    Create(Scheduler::m_soundManProxy, SOUND_MANAGER, SOUND_TIMEOUT_MS);
    Subscribe(Scheduler::m_soundManProxy, &SoundManagerProxy::PlayFileCompleted,
              &SoundManagerProxy::PlayPlaylistCompleted, &SoundManagerProxy::StreamEnabled);
    Follow(Scheduler::m_soundManProxy);
    Create(Scheduler::m_photoManProxy, PHOTO_MANAGER, PHOTO_TIMEOUT_MS);
    Follow(Scheduler::m_photoManProxy);
    Create(Scheduler::m_lightManProxy, LIGHT_MANAGER);
    Create(Scheduler::m_cpuFreqManProxy, CPU_FREQ_MANAGER, CPU_FREQ_TIMEOUT_MS);
    Create(Scheduler::m_gpsManProxy, GPS_MANAGER, GPS_FIRST_TIMEOUT_MS);
    Create(Scheduler::m_networkManProxy, NETWORK_MANAGER);
    Scheduler::m_gpsManProxy->setTimeout(GPS_FINAL_TIMEOUT_MS);
}

void Peers::DeleteProxies()
{
    Delete(Scheduler::m_configManProxy);
    Delete(Scheduler::m_updateManProxy);
    Delete(Scheduler::m_soundManProxy);
    Delete(Scheduler::m_photoManProxy);
    Delete(Scheduler::m_lightManProxy);
    Delete(Scheduler::m_cpuFreqManProxy);
    Delete(Scheduler::m_gpsManProxy);
    Delete(Scheduler::m_networkManProxy);
}

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

#include <QDBusConnection>

namespace
{

// Where a manager is on the session bus, and how long a call to it may take.
struct Address
{
    const char* service;
    const char* path;
    int timeout_ms;
};

// Keeps the D-Bus library's own time-out.
constexpr int LIBRARY_DEFAULT = -1;

constexpr Address CONFIG_MANAGER{"com.kestrelix.ozna.configmanager", "/com/kestrelix/ozna/configmanager/configobj",
                                 2000};
constexpr Address UPDATE_MANAGER{"com.kestrelix.ozna.updatemanager", "/com/kestrelix/ozna/updatemanager/updateobj",
                                 2000};
constexpr Address SOUND_MANAGER{"com.kestrelix.ozna.soundmanager", "/com/kestrelix/ozna/soundmanager/soundobj", 3000};
constexpr Address PHOTO_MANAGER{"com.kestrelix.ozna.photomanager", "/com/kestrelix/ozna/photomanager/photoobj", 5000};
constexpr Address LIGHT_MANAGER{"com.kestrelix.ozna.lightmanager", "/com/kestrelix/ozna/lightmanager/lightobj",
                                LIBRARY_DEFAULT};
constexpr Address CPU_FREQ_MANAGER{"com.kestrelix.ozna.freqmanager", "/com/kestrelix/ozna/freqmanager/freqobj", 2000};
constexpr Address GPS_MANAGER{"com.kestrelix.ozna.gpsmanager", "/com/kestrelix/ozna/gpsmanager/gpsobj", 2000};
constexpr Address NETWORK_MANAGER{"com.kestrelix.ozna.networkmanager", "/com/kestrelix/ozna/networkmanager/netobj",
                                  LIBRARY_DEFAULT};

// The GPS manager's once all proxies stand.
constexpr int GPS_FINAL_TIMEOUT_MS = 5000;

template <typename Proxy> void Create(Proxy*& proxy, const Address& address)
{
    proxy = new Proxy(QString::fromLatin1(address.service), QString::fromLatin1(address.path),
                      QDBusConnection::sessionBus(), nullptr);
    if (address.timeout_ms != LIBRARY_DEFAULT)
        proxy->setTimeout(address.timeout_ms);
}

} // namespace

void Peers::CreateProxies()
{
    Create(Scheduler::m_configManProxy, CONFIG_MANAGER);
    Create(Scheduler::m_updateManProxy, UPDATE_MANAGER);
    Create(Scheduler::m_soundManProxy, SOUND_MANAGER);
    Create(Scheduler::m_photoManProxy, PHOTO_MANAGER);
    Create(Scheduler::m_lightManProxy, LIGHT_MANAGER);
    Create(Scheduler::m_cpuFreqManProxy, CPU_FREQ_MANAGER);
    Create(Scheduler::m_gpsManProxy, GPS_MANAGER);
    Create(Scheduler::m_networkManProxy, NETWORK_MANAGER);
    Scheduler::m_gpsManProxy->setTimeout(GPS_FINAL_TIMEOUT_MS);
}

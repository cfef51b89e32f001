#pragma once

class ConfigProxy;
class CpuFreqManagerProxy;
class GpsManagerProxy;
class LightManagerProxy;
class NetworkManagerProxy;
class PhotoManagerProxy;
class SoundManagerProxy;
class UpdateManagerProxy;

// The proxies of the device's managers, one of each for the process. Peers creates and deletes them, and the client of
// each manager uses its own. The scheduler, as whose static members they are known, derives from this class: so who
// asks a peer need not know the scheduler.
class PeerProxies
{
public:
    static inline ConfigProxy* m_configManProxy = nullptr;
    static inline UpdateManagerProxy* m_updateManProxy = nullptr;
    static inline SoundManagerProxy* m_soundManProxy = nullptr;
    static inline PhotoManagerProxy* m_photoManProxy = nullptr;
    static inline LightManagerProxy* m_lightManProxy = nullptr;
    static inline CpuFreqManagerProxy* m_cpuFreqManProxy = nullptr;
    static inline GpsManagerProxy* m_gpsManProxy = nullptr;
    static inline NetworkManagerProxy* m_networkManProxy = nullptr;
};

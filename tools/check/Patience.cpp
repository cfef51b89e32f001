#include "Patience.h"

#include "Parameter.h"
#include "Peers.h"
#include "Scheduler.h"
#include "tasks/PlayPlaylist.h"
#include "tasks/PlayRadioFm.h"

#include <CpuFreqManagerProxy.h>
#include <GpsManagerProxy.h>
#include <LightManagerProxy.h>
#include <NetworkManagerProxy.h>
#include <PhotoManagerProxy.h>
#include <SoundManagerProxy.h>

namespace
{

constexpr int LIBRARY_TIMEOUT_MS = 25000; // of calls for which nobody sets one
constexpr int MS_PER_S = 1000;

// In milliseconds.
int TimeoutOf(const QDBusAbstractInterface& proxy)
{
    return proxy.timeout() < 0 ? LIBRARY_TIMEOUT_MS : proxy.timeout();
}

} // namespace

Patience::Patience()
{
    Peers::CreateProxies();
    m_timeout_ms[SOUND] = TimeoutOf(*Scheduler::m_soundManProxy);
    m_timeout_ms[PHOTO] = TimeoutOf(*Scheduler::m_photoManProxy);
    m_timeout_ms[LIGHT] = TimeoutOf(*Scheduler::m_lightManProxy);
    m_timeout_ms[CPU_FREQ] = TimeoutOf(*Scheduler::m_cpuFreqManProxy);
    m_timeout_ms[GPS] = TimeoutOf(*Scheduler::m_gpsManProxy);
    m_timeout_ms[NETWORK] = TimeoutOf(*Scheduler::m_networkManProxy);
    Peers::DeleteProxies();
}

Patience::Peer Patience::PeerOf(const Entry& entry)
{
    switch (entry.GetAction()->m_task->m_type)
    {
    case TASK_LIGHT: return LIGHT;
    case TASK_RECORD_PHOTO:
    case TASK_CAMERA: return PHOTO;
    case TASK_SET_CPU_FREQ: return CPU_FREQ;
    case TASK_GPS: return GPS;
    case TASK_LAN: return NETWORK;
    case TASK_REQUEST_PDD_ACTION: return PEERS;
    default: return SOUND;
    }
}

int Patience::Longest_s(const Entry& entry) const
{
    const int call_ms = m_timeout_ms[PeerOf(entry)];
    const bool isOn = entry.parameters.value(0).toDouble() != 0;
    const bool setsVolume = Parameter::ToInt(entry.parameters.value(1), -1, [] {}) >= 0;
    const int volume_ms = setsVolume ? call_ms : 0;
    const auto longest_ms = [&] {
        switch (entry.GetAction()->m_task->m_type)
        {
        // The intensity, then the switch.
        case TASK_LIGHT: return isOn ? call_ms + call_ms : call_ms;
        // The radio, then its frequency.
        case TASK_PLAY_RADIO_FM: return isOn ? PlayRadioFm::SWITCH_ON_TIMEOUT_MS + call_ms : call_ms;
        case TASK_PLAY_PLAYLIST: return volume_ms + PlayPlaylist::REQUEST_TIMEOUT_MS;
        case TASK_PLAY_MESSAGE:
        case TASK_PLAY_STREAM: return volume_ms + call_ms;
        default: return call_ms;
        }
    };
    return longest_ms() / MS_PER_S;
}

bool Patience::ShareAPeer(const Entry& one, const Entry& other)
{
    return PeerOf(one) != PEERS && PeerOf(one) == PeerOf(other);
}

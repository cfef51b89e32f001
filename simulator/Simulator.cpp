#include "Simulator.h"

#include "PeerTable.h"

#include <algorithm>

Simulator::Simulator(const QDBusConnection& bus)
{
    for (const PeerAddress& address : PEER_TABLE)
    {
        m_peers.push_back(std::make_unique<SimulatedPeer>(address, bus, m_script));
        const SimulatedPeer* const peer = m_peers.back().get();
        connect(peer, &SimulatedPeer::Received, this, [this](const Call& call) { m_log.Add(call); });
        connect(peer, &SimulatedPeer::Received, this, &Simulator::Received);
        connect(peer, &SimulatedPeer::Accepted, this, &Simulator::Accepted);
        connect(peer, &SimulatedPeer::SignalSent, this, &Simulator::SignalSent);
    }
}

Simulator::~Simulator() = default;

void Simulator::Register(const QStringList& absentInterfaces)
{
    // A name promises the object behind it.
    for (const auto& peer : m_peers)
        peer->Register();
    for (const auto& peer : m_peers)
        peer->SetPresent(!absentInterfaces.contains(peer->Description().Name()));
}

SimulatedPeer* Simulator::FindPeer(const QString& interface)
{
    const auto peer = std::ranges::find_if(
        m_peers, [&interface](const auto& candidate) { return candidate->Description().Name() == interface; });
    return peer != m_peers.end() ? peer->get() : nullptr;
}

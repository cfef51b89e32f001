#pragma once

#include <QString>
#include <QStringList>

#include <vector>

// Which of the device's managers are there to be asked.
namespace PeerPresence
{

struct Peer
{
    QString name; // the last part of the service's name, as "soundmanager"
    bool isPresent;
};

// Those that the daemon asks, in the order in which the documents name them. serviceNames: all on the bus, and those
// that it would start.
[[nodiscard]] std::vector<Peer> Of(const QStringList& serviceNames);

} // namespace PeerPresence

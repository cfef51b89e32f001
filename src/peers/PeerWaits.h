#pragma once

#include <QString>

#include <cstdint>

// How long the loop has waited for which peer, so that what came too late meanwhile can be explained.
namespace PeerWaits
{

// The loop has waited for service from begin_ms to end_ms, of the machine's uptime. Waits for one service that follow
// each other at once count as one; only the latest are kept, and no short ones.
void Note(const QString& service, std::int64_t begin_ms, std::int64_t end_ms);

// The service that was waited for longest between the two moments; empty when none was for long.
[[nodiscard]] QString Longest(std::int64_t from_ms, std::int64_t to_ms);

// The service that was waited for from one moment to the other without a break; empty when none was.
[[nodiscard]] QString Throughout(std::int64_t from_ms, std::int64_t to_ms);

// Forgets all: new proxies have waited for nobody.
void Clear();

} // namespace PeerWaits

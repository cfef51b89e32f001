#pragma once

#include "Entry.h"

#include <array>

// How long the daemon may wait for peers while it does an entry, and nothing else.
class Patience final
{
public:
    // Reads the time-outs that the daemon gives its peers.
    Patience();

    // In seconds, for an entry that was not rejected.
    [[nodiscard]] int Longest_s(const Entry& entry) const;

    // Whether both ask the same peer: where it does not answer, neither is done, whoever waits for whom.
    [[nodiscard]] static bool ShareAPeer(const Entry& one, const Entry& other);

private:
    enum Peer : int
    {
        SOUND,
        PHOTO,
        LIGHT,
        CPU_FREQ,
        GPS,
        NETWORK,
        PEERS, // none of them
    };

    [[nodiscard]] static Peer PeerOf(const Entry& entry);

    std::array<int, PEERS + 1> m_timeout_ms{}; // 0 for none
};

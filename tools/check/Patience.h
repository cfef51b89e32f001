#pragma once

#include "Entry.h"

#include <QSet>

class Workspace;

// How long an entry may block the daemon while it waits for peers.
class Patience final
{
public:
    // Has the entry's task done once, before peers that accept everything. entry: of that workspace, not a rejected
    // one.
    Patience(const Workspace& workspace, const Entry& entry);

    // In seconds.
    [[nodiscard]] int Longest_s() const { return m_longest_s; }

    // Whether both call the same peer: if it does not answer, neither is done, whichever waits.
    [[nodiscard]] bool SharesAPeerWith(const Patience& other) const { return m_peers.intersects(other.m_peers); }

private:
    int m_longest_s = 0;
    QSet<QString> m_peers;
};

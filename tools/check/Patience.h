#pragma once

#include "Entry.h"

#include <QSet>

class Workspace;

// How long the daemon may wait for peers while it does an entry, and nothing else.
class Patience final
{
public:
    // Has the entry's task done once, before peers that accept everything. entry: of that workspace, not a rejected
    // one.
    Patience(const Workspace& workspace, const Entry& entry);

    // In seconds.
    [[nodiscard]] int Longest_s() const { return m_longest_s; }

    // Whether both ask one peer: where it does not answer, neither is done, whoever waits for whom.
    [[nodiscard]] bool SharesAPeerWith(const Patience& other) const { return m_peers.intersects(other.m_peers); }

private:
    int m_longest_s = 0;
    QSet<QString> m_peers;
};

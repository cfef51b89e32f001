#pragma once

#include "Entry.h"

#include <QSet>

class TaskRequests;

// How long an entry may block the daemon while it waits for peers.
class Patience final
{
public:
    // Has the entry's task done once, before peers that accept everything. entry: of their workspace, not a rejected
    // one.
    Patience(TaskRequests& peers, const Entry& entry);

    // In seconds.
    [[nodiscard]] int Longest_s() const { return m_longest_s; }

    // The peers that it calls. If one does not answer, all who call it are lost, whoever waits.
    [[nodiscard]] const QSet<QString>& Peers() const { return m_peers; }

private:
    int m_longest_s = 0;
    QSet<QString> m_peers;
};

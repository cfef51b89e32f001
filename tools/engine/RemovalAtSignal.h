#pragma once

#include <QStringList>

// Takes files and folders away when SIGHUP, SIGINT or SIGTERM ends the process, which then ends all the same. Puts a
// handler of its own in the place of the default for as long as it lives; a signal that is ignored stays so. Only one
// may live.
class RemovalAtSignal final
{
public:
    // paths: in the order of removal; a folder is empty when its turn comes.
    explicit RemovalAtSignal(const QStringList& paths);
    ~RemovalAtSignal();

    RemovalAtSignal(const RemovalAtSignal&) = delete;
    RemovalAtSignal& operator=(const RemovalAtSignal&) = delete;
};

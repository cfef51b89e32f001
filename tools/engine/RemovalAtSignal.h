#pragma once

#include <QStringList>

#include <string>
#include <vector>

// Takes files and folders away when SIGHUP, SIGINT or SIGTERM ends the process, which then ends all the same. Puts a
// handler in the place of the default for as long as one lives; a signal that is ignored stays so.
class RemovalAtSignal final
{
public:
    // paths: in the order of removal; a folder is empty when its turn comes.
    explicit RemovalAtSignal(const QStringList& paths);
    ~RemovalAtSignal();

    RemovalAtSignal(const RemovalAtSignal&) = delete;
    RemovalAtSignal& operator=(const RemovalAtSignal&) = delete;

    // As the system calls them.
    [[nodiscard]] const std::vector<std::string>& Paths() const { return m_paths; }

private:
    std::vector<std::string> m_paths;
};

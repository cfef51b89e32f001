#pragma once

#include "LogSink.h"

#include <string>

// The system's journal. It is sent its own form of record, one datagram each, and not through the journal's library,
// whose calls wait while the journal does not read.
class LogJournal final : public LogSink
{
public:
    // Whether the journal reads that descriptor: the service manager says so in the environment.
    [[nodiscard]] static bool Reads(int descriptor);

    LogJournal();
    ~LogJournal() override;

    // False as well while there is no journal.
    [[nodiscard]] bool Take(const LogRecord& record) override;

private:
    const std::string m_program; // as it was called
    const int m_socket;          // -1 when none could be had
};

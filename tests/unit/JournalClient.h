#pragma once

#include "JournalSocket.h"
#include "LogChannel.h"

#include <LogInterface.h>

#include <optional>

// The log client of a process whose standard error the journal reads; every level is logged.
class JournalClient final
{
public:
    JournalClient();
    ~JournalClient();

    JournalClient(const JournalClient&) = delete;
    JournalClient& operator=(const JournalClient&) = delete;

    void Log(unsigned int level, const QByteArray& text, const char* origin = LogSum::ORIGIN);

    // What came to standard error all the same.
    [[nodiscard]] QByteArray StandardErrorText() const { return m_channel.Read(); }

    // The environment by which the service manager names what is behind a descriptor, and by which a process is told.
    static constexpr const char* STREAM_VARIABLE = "JOURNAL_STREAM";
    static constexpr const char* LEVEL_VARIABLE = "OZNA_LOG_LEVEL";
    [[nodiscard]] static QByteArray StreamName(int descriptor, unsigned int otherDevice = 0,
                                               unsigned int otherInode = 0);

    // The entry of a record without a place.
    [[nodiscard]] static JournalSocket::Entry EntryOf(const QByteArray& level, const QByteArray& priority,
                                                      const QByteArray& text);

private:
    const LogChannel m_channel;
    const StandardError m_redirected;
    std::optional<LogInterface> m_client;
};

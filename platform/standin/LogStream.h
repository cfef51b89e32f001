#pragma once

#include "LogSink.h"

#include <string>
#include <string_view>
#include <sys/types.h>

// The descriptor to which the log is written. Never blocks: not on a full pipe, socket or terminal, and not on a full
// disk. Does not change anything that other processes share, such as the flags of the descriptor.
class LogStream final : public LogSink
{
public:
    // descriptor: must stay open, on the same file, for as long as this object lives.
    explicit LogStream(int descriptor);
    ~LogStream() override;

    // Writes the record as a line, with one system call. If only a part of a long one fits, the rest is written before
    // the next.
    [[nodiscard]] bool Take(const LogRecord& record) override;

private:
    enum class Way
    {
        AT_ONCE, // writing never waits
        SOCKET,  // each write says that it must not wait
        ASKING,  // whether writing would wait is asked before
    };

    [[nodiscard]] static Way WayOf(int descriptor);
    [[nodiscard]] bool WriteRest();
    [[nodiscard]] ssize_t WriteSome(std::string_view bytes) const;

    const int m_own; // the same file, opened for this process alone; -1 if that is not needed or not possible
    const int m_descriptor;
    const Way m_way;
    std::string m_rest; // of a record that was begun
};

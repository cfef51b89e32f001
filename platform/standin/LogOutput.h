#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <sys/types.h>

// The descriptor to which the log is written. Never blocks: not on a full pipe, socket or terminal, and not on a full
// disk. Does not change anything that other processes share, such as the flags of the descriptor.
class LogOutput final
{
public:
    // What is written in front of the next record for that many lost ones; empty to write nothing.
    using LossRecord = std::function<std::string(unsigned int lost)>;

    // descriptor: must stay open, on the same file, for as long as this object lives.
    LogOutput(int descriptor, LossRecord lossRecord);
    ~LogOutput();

    LogOutput(const LogOutput&) = delete;
    LogOutput& operator=(const LogOutput&) = delete;

    // Writes the record with one system call, or drops and counts it if there is no room: a record is written whole or
    // not at all. If only a part of a long one fits, the rest is written before the next.
    void Write(std::string_view record);

private:
    enum class Way
    {
        AT_ONCE, // writing never waits
        SOCKET,  // each write says that it must not wait
        ASKING,  // whether writing would wait is asked before
    };

    [[nodiscard]] static Way WayOf(int descriptor);
    [[nodiscard]] bool Take(std::string_view record);
    [[nodiscard]] bool WriteRest();
    [[nodiscard]] ssize_t WriteSome(std::string_view bytes) const;

    const LossRecord m_lossRecord;
    const int m_own; // the same file, opened for this process alone; -1 if that is not needed or not possible
    const int m_descriptor;
    const Way m_way;
    std::string m_rest; // of a record that was begun
    unsigned int m_lost = 0;
};

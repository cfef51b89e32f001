#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <sys/types.h>

// The descriptor to which the log is written. Nobody is waited for: not for the reader of a pipe, socket or terminal,
// and not for room on a disk. What others share with this process, the flags of the descriptor among it, stays as it
// is.
class LogOutput final
{
public:
    // What is written in front of the next record for that many lost ones; empty to write nothing.
    using LossRecord = std::function<std::string(unsigned int lost)>;

    // descriptor: has to stay what it is for as long as this object lives.
    LogOutput(int descriptor, LossRecord lossRecord);
    ~LogOutput();

    LogOutput(const LogOutput&) = delete;
    LogOutput& operator=(const LogOutput&) = delete;

    // Writes the record, by one call of the system, or drops and counts it where there is no room: a record is written
    // whole or not at all. Of a long one that fits in part the rest follows before the next.
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
    const int m_own; // the same file, opened for this process alone; -1 where that is not needed or not to be had
    const int m_descriptor;
    const Way m_way;
    std::string m_rest; // of a record that was begun
    unsigned int m_lost = 0;
};

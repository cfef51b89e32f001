#pragma once

#include <QByteArrayList>
#include <QString>

#include <array>

#include <unistd.h>

// What tests of the log client share: what stands in the place of standard error, and what is read from there.

// Puts a descriptor in standard error's place for as long as it lives.
class StandardError final
{
public:
    explicit StandardError(int descriptor)
        : m_saved(::dup(STDERR_FILENO))
    {
        ::dup2(descriptor, STDERR_FILENO);
    }
    ~StandardError()
    {
        ::dup2(m_saved, STDERR_FILENO);
        ::close(m_saved);
    }

    StandardError(const StandardError&) = delete;
    StandardError& operator=(const StandardError&) = delete;

private:
    const int m_saved;
};

// Two ends of one channel; what is written to the one is read from the other, which never waits.
class LogChannel final
{
public:
    // kind: "pipe", "socket" or "terminal", which hands on what it gets, byte by byte.
    explicit LogChannel(const QString& kind);
    ~LogChannel();

    LogChannel(const LogChannel&) = delete;
    LogChannel& operator=(const LogChannel&) = delete;

    [[nodiscard]] int Reader() const { return m_ends[0]; }
    [[nodiscard]] int Writer() const { return m_ends[1]; }

    // Reads what there is, no more than that.
    [[nodiscard]] QByteArray Read(qsizetype atMost = 10'000'000) const;

private:
    bool OpenTerminal();

    std::array<int, 2> m_ends{-1, -1};
};

// What a log that was not read all the time holds: the numbered records of level 4 from ORIGIN.
struct LogSum
{
    explicit LogSum(const QByteArray& log);

    static constexpr const char* ORIGIN = "/origin";

    QByteArrayList records; // but those that tell of lost ones
    int lost = 0;           // what these tell
    int told = 0;           // how many of these there are
    QByteArray odd;         // the first line that is neither
};

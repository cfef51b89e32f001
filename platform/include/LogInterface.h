#pragma once

#include <QString>

#include <memory>

class LogOutput;

// The client of the device's log service. One instance a process, owned by main and never deleted.
class LogInterface
{
public:
    // objectPath: the D-Bus object under which the log service knows this client.
    explicit LogInterface(const QString& objectPath);
    // The device's library brings its own. NOLINTNEXTLINE(performance-trivially-destructible)
    ~LogInterface();

    LogInterface(const LogInterface&) = delete;
    LogInterface& operator=(const LogInterface&) = delete;

    // Hands one record over. level: 1 errors, 2 warnings, 4 progress, 5 details, 9 trace.
    // text and origin are NUL-terminated; neither is kept. Never throws, fails visibly or blocks: a record that cannot
    // be written is dropped, and before the next one that can be, a record with the number of those lost is written.
    void EmitLogString(unsigned int level, const char* text, const char* origin);

private:
    unsigned int m_maxLevel;
    std::shared_ptr<LogOutput> m_output;
};

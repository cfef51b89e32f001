#pragma once

struct LogRecord;

// Where records go.
class LogSink
{
public:
    LogSink() = default;
    virtual ~LogSink() = default;

    LogSink(const LogSink&) = delete;
    LogSink& operator=(const LogSink&) = delete;

    // Takes the record whole, or nothing of it. False if there is no room; never waits until there is.
    [[nodiscard]] virtual bool Take(const LogRecord& record) = 0;
};

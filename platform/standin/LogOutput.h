#pragma once

#include "LogSink.h"

#include <functional>
#include <memory>
#include <string>

// Hands records to a sink, and counts those that it does not take.
class LogOutput final
{
public:
    // The text of the record that tells of that many lost ones; empty to write none.
    using LossText = std::function<std::string(unsigned int lost)>;

    static constexpr unsigned int LOST_LEVEL = 2;

    // sink: not null.
    LogOutput(std::unique_ptr<LogSink> sink, LossText lossText);

    // Writes the record, behind one that tells of those lost before, or drops and counts it. Never blocks.
    void Write(const LogRecord& record);

private:
    [[nodiscard]] bool TellOfLost() const;

    const std::unique_ptr<LogSink> m_sink;
    const LossText m_lossText;
    unsigned int m_lost = 0;
};

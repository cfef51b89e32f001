#include "LogOutput.h"

#include "LogRecord.h"

#include <utility>

namespace
{

constexpr const char* LOST_ORIGIN = "/com/kestrelix/ozna/scheduler/schedulerobj"; // that of nearly every record

} // namespace

LogOutput::LogOutput(std::unique_ptr<LogSink> sink, LossText lossText)
    : m_sink(std::move(sink))
    , m_lossText(std::move(lossText))
{
}

void LogOutput::Write(const LogRecord& record)
{
    if (m_lost > 0 && TellOfLost())
        m_lost = 0;
    if (m_lost > 0 || !m_sink->Take(record))
        ++m_lost;
}

bool LogOutput::TellOfLost() const
{
    const std::string text = m_lossText(m_lost);
    return text.empty() || m_sink->Take({LOST_LEVEL, text, LOST_ORIGIN});
}

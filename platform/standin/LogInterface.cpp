#include "LogInterface.h"

#include "LogJournal.h"
#include "LogOutput.h"
#include "LogRecord.h"
#include "LogStream.h"

#include <QByteArray>

#include <csignal>
#include <string>
#include <unistd.h>

namespace
{

constexpr const char* LEVEL_VARIABLE = "OZNA_LOG_LEVEL";
constexpr unsigned int DEFAULT_LEVEL = 4;

unsigned int MaxLevelFromEnvironment()
{
    bool ok = false;
    const unsigned int level = qgetenv(LEVEL_VARIABLE).toUInt(&ok);
    return ok ? level : DEFAULT_LEVEL;
}

std::unique_ptr<LogSink> MakeSink()
{
    if (LogJournal::Reads(STDERR_FILENO))
        return std::make_unique<LogJournal>();
    return std::make_unique<LogStream>(STDERR_FILENO);
}

std::string LossText(unsigned int lost)
{
    const std::string site = std::string("[") + __FILE__ + ':' + std::to_string(__LINE__) + "] ";
    return site + "Log records lost: " + std::to_string(lost);
}

} // namespace

LogInterface::LogInterface(const QString& objectPath)
    : m_maxLevel(MaxLevelFromEnvironment())
    , m_output(std::make_shared<LogOutput>(MakeSink(), [maxLevel = m_maxLevel](unsigned int lost) {
        return LogOutput::LOST_LEVEL <= maxLevel ? LossText(lost) : std::string();
    }))
{
    // Standard error needs no address; the path is the device library's.
    Q_UNUSED(objectPath)
    // A reader of the log that goes away must not end the process that writes it.
    std::signal(SIGPIPE, SIG_IGN);
}

LogInterface::~LogInterface() = default;

void LogInterface::EmitLogString(unsigned int level, const char* text, const char* origin)
{
    if (level <= m_maxLevel)
        m_output->Write({level, text, origin});
}

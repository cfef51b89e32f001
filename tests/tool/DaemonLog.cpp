#include "DaemonLog.h"

#include "Globals.h"

#include <LogInterface.h>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace
{

struct Kept
{
    unsigned int least = 0;
    QStringList records;
};

Kept& TheKept()
{
    static Kept kept;
    return kept;
}

} // namespace

// Linked in the place of the platform's.
LogInterface::LogInterface(const QString& objectPath)
    : m_maxLevel(LEVEL_TRACE)
{
    Q_UNUSED(objectPath)
}

LogInterface::~LogInterface() = default;

void LogInterface::EmitLogString(unsigned int level, const char* text, const char* origin)
{
    Q_UNUSED(origin)
    if (level > std::min<unsigned int>(m_maxLevel, TheKept().least))
        return;
    const QString record = QString::fromUtf8(text);
    TheKept().records.append(record.mid(record.indexOf("] "_L1) + 2).trimmed());
}

DaemonLog::DaemonLog(LogLevel least)
{
    // Without a client the records are not even formatted.
    static LogInterface client{QString()};
    TheKept() = {least, {}};
    _logInterface = &client;
}

DaemonLog::~DaemonLog()
{
    _logInterface = nullptr;
}

QStringList DaemonLog::Take()
{
    return std::exchange(TheKept().records, {});
}

#include "LogRecorder.h"

#include "Globals.h"
#include "Log.h"
#include "TextDiff.h"

#include <LogInterface.h>

#include <QRegularExpression>

#include <limits>

using namespace Qt::StringLiterals;

namespace
{

QList<LogRecord>& AllRecords()
{
    static QList<LogRecord> records;
    return records;
}

QString Shown(const QString& record, const QByteArray& origin)
{
    return origin == Log::ORIGIN ? record : u"%1 (from %2)"_s.arg(record, QString::fromUtf8(origin));
}

// Leaves the line number out of the prefix; a prefix of another form stays as it is, and equals nothing expected.
QString ShownRecord(const LogRecord& record)
{
    static const QRegularExpression prefix(u"\\A\\[([A-Za-z]+(?:/[A-Za-z]+)*\\.(?:cpp|h)):[1-9][0-9]*\\] "_s);
    QString text = QString::fromUtf8(record.text);
    text.replace(prefix, u"[\\1] "_s);
    return Shown(QString::number(record.level) + u' ' + text, record.origin);
}

} // namespace

LogLine::LogLine(const char* record, const char* origin)
    : LogLine(QByteArray(record), origin)
{
}

LogLine::LogLine(const QByteArray& record, const char* origin)
    : shown(Shown(QString::fromUtf8(record), origin != nullptr ? origin : Log::ORIGIN))
{
}

LogLine::LogLine(QString record)
    : shown(std::move(record))
{
}

LogLines ToLines(const QStringList& records)
{
    LogLines lines;
    for (const QString& record : records)
        lines.append(LogLine(record));
    return lines;
}

LogInterface::LogInterface(const QString& objectPath)
    : m_maxLevel(std::numeric_limits<unsigned int>::max())
{
    Q_UNUSED(objectPath)
}

LogInterface::~LogInterface() = default;

void LogInterface::EmitLogString(unsigned int level, const char* text, const char* origin)
{
    if (level <= m_maxLevel)
        AllRecords().append({level, text, origin});
}

void LogRecorder::Install()
{
    static LogInterface recorder{QString()};
    _logInterface = &recorder;
}

QList<LogRecord> LogRecorder::Records(unsigned int maxLevel)
{
    QList<LogRecord> records = AllRecords();
    records.removeIf([maxLevel](const LogRecord& record) { return record.level > maxLevel; });
    return records;
}

QStringList LogRecorder::Messages(unsigned int maxLevel)
{
    QStringList messages;
    for (const LogRecord& record : Records(maxLevel))
        messages.append(QString::fromUtf8(record.text.mid(record.text.indexOf("] ") + 2)));
    return messages;
}

void LogRecorder::Clear()
{
    AllRecords().clear();
}

QByteArray LogRecorder::Compare(unsigned int maxLevel, const LogLines& expected)
{
    QStringList wanted;
    for (const LogLine& line : expected)
        wanted.append(line.shown);
    QStringList found;
    for (const LogRecord& record : Records(maxLevel))
        found.append(ShownRecord(record));
    Clear();
    return TextDiff(wanted, found, "log record");
}

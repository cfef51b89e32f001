#include "LogRecords.h"

#include "Log.h"
#include "base/ToolError.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

#include <algorithm>

namespace
{

constexpr int JOURNAL_MS = 10000;

const QString JOURNAL = QStringLiteral("journalctl");
constexpr const char* UNIT = "ozna-scheduler.service";
constexpr const char* MESSAGE_FIELD = "MESSAGE";
constexpr const char* LEVEL_FIELD = "OZNA_LEVEL";
constexpr const char* PRIORITY_FIELD = "PRIORITY";           // of what the session manager says of the daemon
constexpr const char* MOMENT_FIELD = "__REALTIME_TIMESTAMP"; // in microseconds
constexpr int ERROR_PRIORITY = 3;
constexpr int US_PER_MS = 1000;

void KeepLast(std::vector<LoggedRecord>& records, int count)
{
    const auto surplus = static_cast<qsizetype>(records.size()) - count;
    if (surplus > 0)
        records.erase(records.begin(), records.begin() + surplus);
}

// A field that is no text in UTF-8 stands as an array of its bytes.
QString Text(const QJsonValue& value)
{
    if (!value.isArray())
        return value.toString();
    QByteArray bytes;
    const QJsonArray array = value.toArray();
    for (const auto& byte : array)
        bytes.append(static_cast<char>(byte.toInt()));
    return QString::fromUtf8(bytes);
}

LoggedRecord OfEntry(const QJsonObject& entry)
{
    bool hasLevel = false;
    unsigned int level = entry.value(QLatin1String(LEVEL_FIELD)).toString().toUInt(&hasLevel);
    if (!hasLevel)
        level = entry.value(QLatin1String(PRIORITY_FIELD)).toString().toInt() <= ERROR_PRIORITY ? LEVEL_ERROR
                                                                                                : LEVEL_WARNING;
    return {entry.value(QLatin1String(MOMENT_FIELD)).toString().toLongLong() / US_PER_MS, level,
            Text(entry.value(QLatin1String(MESSAGE_FIELD)))};
}

} // namespace

std::vector<LoggedRecord> LogRecords::OfFile(const QString& file, int count)
{
    QFile log(file);
    if (!log.open(QIODevice::ReadOnly))
        throw ToolError(QStringLiteral("%1: %2").arg(file, log.errorString()));
    std::vector<LoggedRecord> records;
    for (QByteArray line = log.readLine(); !line.isEmpty(); line = log.readLine())
    {
        const QString text = QString::fromUtf8(line).trimmed();
        bool isRecord = false;
        const unsigned int level = text.section(u' ', 0, 0).toUInt(&isRecord);
        if (!isRecord || level < LEVEL_ERROR || level > LEVEL_WARNING)
            continue;
        records.push_back({{}, level, text.section(u' ', 2)});
        KeepLast(records, count);
    }
    if (log.error() != QFileDevice::NoError)
        throw ToolError(QStringLiteral("%1: %2").arg(file, log.errorString()));
    return records;
}

std::optional<std::vector<LoggedRecord>> LogRecords::OfJournal(int count)
{
    QProcess journal;
    journal.setStandardErrorFile(QProcess::nullDevice());
    journal.start(JOURNAL, {QStringLiteral("--user"), QStringLiteral("--unit"), QLatin1String(UNIT),
                            QStringLiteral("--priority"), QStringLiteral("warning"), QStringLiteral("--lines"),
                            QString::number(count), QStringLiteral("--output"), QStringLiteral("json"),
                            QStringLiteral("--no-pager"), QStringLiteral("--quiet")});
    if (!journal.waitForFinished(JOURNAL_MS) || journal.exitStatus() != QProcess::NormalExit || journal.exitCode() != 0)
        return {};
    std::vector<LoggedRecord> records;
    for (const QByteArray& line : journal.readAllStandardOutput().split('\n'))
    {
        const QJsonDocument entry = QJsonDocument::fromJson(line);
        if (entry.isObject())
            records.push_back(OfEntry(entry.object()));
    }
    KeepLast(records, count);
    return records;
}

#include "ScheduleLine.h"

#include "Workspace.h"
#include "base/ToolError.h"
#include "peers/Peers.h"
#include "text/TextFile.h"

#include <QStringList>

namespace
{

// Tasks expect the peers to be there when they are made, and connect to their signals.
class PeersForReading final
{
public:
    PeersForReading() { Peers::CreateProxies(); }
    ~PeersForReading() { Peers::DeleteProxies(); }

    PeersForReading(const PeersForReading&) = delete;
    PeersForReading& operator=(const PeersForReading&) = delete;
};

ScheduleLine ReadLine(const QString& text, int number)
{
    ScheduleLine line{number, text, TextFile::IsBlankOrComment(text), nullptr, {}};
    if (line.isSkipped)
        return line;
    DaemonLog log(LEVEL_WARNING);
    try
    {
        line.action = std::make_unique<Action>(text);
        line.action->m_lineNumber = number;
    }
    catch (const std::exception&)
    {
        // The reason is among the records.
    }
    line.records = log.Take();
    for (DaemonRecord& record : line.records)
        record.text = Workspace::Readable(record.text);
    return line;
}

} // namespace

QString ScheduleLine::Rejection() const
{
    QStringList reasons;
    for (const DaemonRecord& record : records)
    {
        if (record.level == LEVEL_ERROR)
            reasons.append(record.text);
    }
    return reasons.join(QStringLiteral("; "));
}

std::vector<ScheduleLine> ScheduleLine::ReadFile(const QString& path, const QString& name)
{
    std::vector<ScheduleLine> lines;
    TextFile file(path);
    if (!file.Open())
        throw ToolError(QStringLiteral("%1: cannot be opened").arg(name));
    const PeersForReading peers;
    QString text;
    while (file.ReadLine(text))
    {
        lines.push_back(ReadLine(text, file.LineNumber()));
        lines.back().hasLineEnd = file.HasLineEnd();
        lines.back().hasLoneReturn = file.HasLoneReturn();
    }
    if (!file.ReadError().isEmpty())
        throw ToolError(QStringLiteral("%1: %2").arg(name, file.ReadError()));
    return lines;
}

ScheduleLine ScheduleLine::Read(const QString& text, int number)
{
    const PeersForReading peers;
    return ReadLine(text, number);
}

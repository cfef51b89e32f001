#include "ScheduleLine.h"

#include "Workspace.h"
#include "base/ToolError.h"
#include "peers/Peers.h"
#include "text/TextFile.h"

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

ScheduleLine ReadLine(const Workspace& workspace, const QString& text, int number)
{
    ScheduleLine line{number, text, TextFile::IsBlankOrComment(text)};
    if (line.isSkipped)
        return line;
    try
    {
        line.action = std::make_unique<Action>(text);
        line.action->m_lineNumber = number;
        for (const TaskWarning& warning : line.action->m_task->Warnings())
            line.warnings.append({warning.parameter, workspace.Readable(warning.text)});
    }
    catch (const Rejection& rejection)
    {
        line.rejected = {rejection.GetCause(), workspace.Readable(rejection.Reason()),
                         workspace.Readable(rejection.File())};
        if (rejection.GetCause() == Rejection::Cause::PLAYLIST_FILE)
            line.rejected->missingFolders = workspace.Playlists().missing;
    }
    return line;
}

} // namespace

std::vector<ScheduleLine> ScheduleLine::ReadFile(const Workspace& workspace, const QString& name)
{
    const Workspace::Use use(workspace);
    std::vector<ScheduleLine> lines;
    TextFile file(workspace.SchedulePath());
    if (!file.Open())
        throw ToolError(QStringLiteral("%1: cannot be opened").arg(name));
    const PeersForReading peers;
    QString text;
    while (file.ReadLine(text))
    {
        lines.push_back(ReadLine(workspace, text, file.LineNumber()));
        lines.back().hasLineEnd = file.HasLineEnd();
        lines.back().hasLoneReturn = file.HasLoneReturn();
    }
    if (!file.ReadError().isEmpty())
        throw ToolError(QStringLiteral("%1: %2").arg(name, file.ReadError()));
    return lines;
}

ScheduleLine ScheduleLine::Read(const Workspace& workspace, const QString& text, int number)
{
    const Workspace::Use use(workspace);
    const PeersForReading peers;
    return ReadLine(workspace, text, number);
}

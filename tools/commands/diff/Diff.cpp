#include "ScheduleDiff.h"
#include "base/CommandLine.h"
#include "base/ExitStatus.h"
#include "base/Terminal.h"
#include "base/ToolError.h"
#include "commands/Commands.h"
#include "commands/RehearsalRun.h"
#include "engine/ScheduleStream.h"

namespace
{

const QString OLD_PLAYLISTS = QStringLiteral("old-playlists");
const QString NEW_PLAYLISTS = QStringLiteral("new-playlists");
constexpr int USUAL_DAYS = 30;

// Half a comparison would be untrue.
int TellCut()
{
    Terminal::PrintError(QStringLiteral("interrupted: nothing is shown\n"));
    return ExitStatus::INTERRUPTED;
}

} // namespace

int Commands::Diff(const QStringList& arguments)
{
    CommandLine line(QStringLiteral("diff"),
                     QStringLiteral("Shows which starts come (+), go (-), move (~) or ask for something else (!) when\n"
                                    "OLD is replaced by NEW, and what is then in force at the end. It compares the\n"
                                    "requests, whatever the lines look like. The status is 0 when all are the same,\n"
                                    "1 when some differ, and 2 when the daemon rejects a line of NEW."),
                     {QStringLiteral("OLD"), QStringLiteral("NEW")});
    RehearsalRun::AddSpanOptions(line, USUAL_DAYS);
    line.AddValue(OLD_PLAYLISTS, QStringLiteral("DIR"),
                  QStringLiteral("folder of OLD's playlists, if not --playlists"));
    line.AddValue(NEW_PLAYLISTS, QStringLiteral("DIR"),
                  QStringLiteral("folder of NEW's playlists, if not --playlists"));
    if (!line.Parse(arguments))
        return ExitStatus::CLEAN;

    if (ScheduleStream::IsStandardInput(line.Operand(0)) && ScheduleStream::IsStandardInput(line.Operand(1)))
        throw ToolError(QStringLiteral("OLD and NEW cannot both be standard input: there is only one"));

    RehearsalRun::SetTimeZone(line);
    const qint64 from_ms = RehearsalRun::From_ms(line);
    const qint64 until_ms = RehearsalRun::Until_ms(line, from_ms);
    EndState oldInForce;
    TaskPhrases::Map oldPhrases;
    const RehearsalRun before(
        line, line.Operand(0), std::nullopt, from_ms, until_ms,
        {.requested = [&](const Request& request, bool isByChance) { oldInForce.Take(request, isByChance); },
         .read = [&](const Workspace& workspace) { oldPhrases = TaskPhrases::Of(workspace, line.Operand(0)); }},
        line.Value(OLD_PLAYLISTS), QStringLiteral("in the old schedule "));
    if (before.Status() == ExitStatus::INTERRUPTED)
        return TellCut();
    EndState newInForce;
    TaskPhrases::Map newPhrases;
    const RehearsalRun after(
        line, line.Operand(1), std::nullopt, from_ms, until_ms,
        {.requested = [&](const Request& request, bool isByChance) { newInForce.Take(request, isByChance); },
         .read = [&](const Workspace& workspace) { newPhrases = TaskPhrases::Of(workspace, line.Operand(1)); }},
        line.Value(NEW_PLAYLISTS));
    if (after.Status() == ExitStatus::INTERRUPTED)
        return TellCut();
    const QString text =
        ScheduleDiff::Text({before.Result(), oldInForce, oldPhrases}, {after.Result(), newInForce, newPhrases});
    Terminal::Print(text);
    if (after.Status() != ExitStatus::CLEAN)
        return after.Status();
    return text.isEmpty() ? ExitStatus::CLEAN : ExitStatus::DIFFERENT;
}

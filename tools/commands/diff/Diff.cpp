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
                     QStringLiteral("Shows which starts come (+), go (-) or move (~) when OLD is replaced by NEW,\n"
                                    "whatever their lines look like. The status is 0 when none does, 1 when some do,\n"
                                    "and 2 when the daemon rejects a line of NEW."),
                     {QStringLiteral("OLD"), QStringLiteral("NEW")});
    RehearsalRun::AddSpanOptions(line, USUAL_DAYS);
    if (!line.Parse(arguments))
        return ExitStatus::CLEAN;

    if (ScheduleStream::IsStandardInput(line.Operand(0)) && ScheduleStream::IsStandardInput(line.Operand(1)))
        throw ToolError(QStringLiteral("OLD and NEW cannot both be standard input: there is only one"));

    RehearsalRun::SetTimeZone(line);
    const qint64 from_ms = RehearsalRun::From_ms(line);
    const qint64 until_ms = RehearsalRun::Until_ms(line, from_ms);
    const RehearsalRun before(line, line.Operand(0), std::nullopt, from_ms, until_ms);
    if (before.Status() == ExitStatus::INTERRUPTED)
        return TellCut();
    const RehearsalRun after(line, line.Operand(1), std::nullopt, from_ms, until_ms);
    if (after.Status() == ExitStatus::INTERRUPTED)
        return TellCut();
    const QString text = ScheduleDiff::Text(before.Result(), after.Result());
    Terminal::Print(text);
    if (after.Status() != ExitStatus::CLEAN)
        return after.Status();
    return text.isEmpty() ? ExitStatus::CLEAN : ExitStatus::DIFFERENT;
}

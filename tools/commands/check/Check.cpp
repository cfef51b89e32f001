#include "CheckText.h"
#include "base/CommandLine.h"
#include "base/ExitStatus.h"
#include "base/Moment.h"
#include "base/Terminal.h"
#include "check/Rules.h"
#include "commands/Commands.h"
#include "commands/RehearsalRun.h"
#include "engine/Workspace.h"

namespace
{

const QString TODAY = QStringLiteral("today");
const QString STRICT = QStringLiteral("strict");
const QString JSON = QStringLiteral("json");
const QString PLAYLISTS = QStringLiteral("playlists");

QDate Today(const CommandLine& line)
{
    return Moment::LocalDate(line.Has(TODAY) ? Moment::Parse_ms(QStringLiteral("--today"), line.Value(TODAY))
                                             : Moment::Now_ms());
}

Findings Look(const Workspace& workspace, std::vector<ScheduleLine>& lines, const QDate& today)
{
    const std::vector<Entry> entries = Entry::Of(lines);
    Findings findings;
    Rules::FindRejected(entries, findings);
    Rules::FindOddText(lines, entries, findings);
    Rules::FindOddTimes(entries, findings);
    Rules::FindOddDates(entries, today, findings);
    Rules::FindOddParameters(entries, findings);
    Rules::FindOddPlaylists(workspace, entries, findings);
    Rules::FindOddPairs(entries, findings);
    Rules::FindEarlyLoads(lines, today, findings);
    Rules::FindBlocking(workspace, entries, today, findings);
    findings.Sort();
    return findings;
}

} // namespace

int Commands::Check(const QStringList& arguments)
{
    CommandLine line(QStringLiteral("check"),
                     QStringLiteral("Finds the lines that the daemon drops, or reads otherwise than it was meant."),
                     {QStringLiteral("FILE")});
    RehearsalRun::AddPlaceOptions(line);
    line.AddValue(TODAY, QStringLiteral("DATE"),
                  QStringLiteral("dates before it count as past, as 2024-05-15\n(default: today)"));
    line.AddFlag(STRICT, QStringLiteral("warnings give the exit status 1"));
    line.AddFlag(JSON, QStringLiteral("for machines: one object with all findings"));
    if (!line.Parse(arguments))
        return ExitStatus::CLEAN;

    RehearsalRun::SetTimeZone(line);
    const QDate today = Today(line);
    const QString file = line.Operand(0);
    const Workspace workspace(file, line.Value(PLAYLISTS));
    std::vector<ScheduleLine> lines = ScheduleLine::ReadFile(workspace, file);
    const Findings findings = Look(workspace, lines, today);
    const CheckText::Result result{file, static_cast<int>(lines.size()), findings};
    Terminal::Print(line.Has(JSON) ? CheckText::Json(result) : CheckText::Lines(result));
    if (findings.Errors() > 0)
        return ExitStatus::ERRORS;
    return line.Has(STRICT) && findings.Warnings() > 0 ? ExitStatus::WARNINGS : ExitStatus::CLEAN;
}

#include "CommandLine.h"
#include "Commands.h"
#include "ExitStatus.h"
#include "Moment.h"
#include "RehearsalRun.h"
#include "RehearsalText.h"
#include "Terminal.h"
#include "ToolError.h"

namespace
{

const QString START_AT = QStringLiteral("start-at");
const QString JSON = QStringLiteral("json");
const QString CSV = QStringLiteral("csv");

} // namespace

int Commands::Rehearse(const QStringList& arguments)
{
    CommandLine line(QStringLiteral("rehearse"),
                     QStringLiteral("Shows every request that the daemon would send, in order of time."),
                     {QStringLiteral("FILE")});
    RehearsalRun::AddSpanOptions(line, 1);
    line.AddValue(START_AT, QStringLiteral("MOMENT"),
                  QStringLiteral("the daemon starts, or loads the schedule, then\n"
                                 "(default: it has been running for long)"));
    line.AddFlag(JSON, QStringLiteral("for machines: one object with all events"));
    line.AddFlag(CSV, QStringLiteral("for spreadsheets: a row for each request"));
    if (!line.Parse(arguments))
        return ExitStatus::CLEAN;
    if (line.Has(JSON) && line.Has(CSV))
        throw ToolError(QStringLiteral("--json and --csv exclude each other"));

    RehearsalRun::SetTimeZone(line);
    std::optional<qint64> start_ms;
    if (line.Has(START_AT))
        start_ms = Moment::Parse_ms(QStringLiteral("--start-at"), line.Value(START_AT));
    const qint64 from_ms = start_ms && !line.Has(QStringLiteral("from")) ? *start_ms : RehearsalRun::From_ms(line);
    if (start_ms && *start_ms > from_ms)
        throw ToolError(QStringLiteral("--start-at: comes after --from"));
    const RehearsalRun run(line, line.Operand(0), start_ms, from_ms, RehearsalRun::Until_ms(line, from_ms));
    if (line.Has(JSON))
        Terminal::Print(RehearsalText::Json(run));
    else if (line.Has(CSV))
        Terminal::Print(RehearsalText::Csv(run));
    else
        Terminal::Print(RehearsalText::Table(run));
    return run.Status();
}

#include "ControlOptions.h"
#include "StatusText.h"
#include "base/ExitStatus.h"
#include "base/Moment.h"
#include "base/Terminal.h"
#include "base/ToolError.h"
#include "commands/Commands.h"
#include "commands/RehearsalRun.h"
#include "control/ProcessStart.h"

#include <QDateTime>
#include <QFileInfo>

#include <algorithm>

namespace
{

const QString LOG = QStringLiteral("log");
constexpr int LAST_RECORDS = 5;
constexpr int LONGEST_DAYS = 366; // what comes next is looked for

// By a rehearsal from the daemon's start on: the daemon tells nobody.
void LookAhead(const CommandLine& line, StatusReport& report)
{
    const qint64 until_ms = report.now_ms + LONGEST_DAYS * Moment::DAY_MS;
    qint64 first_ms = until_ms; // the earliest start that has been noted
    const RehearsalRun run(
        line, report.path, std::min(report.since_ms.value_or(report.now_ms), report.now_ms), report.now_ms, until_ms,
        {[&](const Event& event) {
             if (event.kind == EventKind::START && event.Start_ms() >= report.now_ms)
                 first_ms = std::min(first_ms, event.Start_ms());
         },
         [&](Event&& event) {
             if (event.kind != EventKind::START)
                 return;
             if (event.plays && event.begin_ms <= report.now_ms &&
                 (event.end_ms == Event::OPEN || event.end_ms > report.now_ms))
                 report.playing.push_back(event);
             if (event.Start_ms() >= report.now_ms && (!report.next || event.Start_ms() < report.next->Start_ms()))
                 report.next = std::move(event);
         },
         [&](qint64 reached_ms) { return first_ms < reached_ms; }});
    report.held = HeldLines::Of(run.Result().lines);
}

void LookAtFile(const CommandLine& line, StatusReport& report)
{
    const QFileInfo file(report.path);
    if (file.exists())
        report.changed_ms = file.lastModified().toMSecsSinceEpoch();
    try
    {
        LookAhead(line, report);
    }
    catch (const ToolError& error)
    {
        report.unreadable = QString::fromStdString(error.what());
    }
}

} // namespace

int Commands::Status(const QStringList& arguments)
{
    CommandLine line(QStringLiteral("status"),
                     QStringLiteral("Shows whether the daemon runs, what it has loaded, what plays and comes next by\n"
                                    "that schedule as long as nobody reloads it, which peers are on the bus, and the\n"
                                    "last errors and warnings."),
                     {});
    ControlOptions::AddJson(line);
    ControlOptions::AddData(line);
    line.AddValue(LOG, QStringLiteral("FILE"),
                  QStringLiteral("takes errors and warnings from that log file\n(default: from the journal)"));
    RehearsalRun::AddPlaceOptions(line);
    if (!line.Parse(arguments))
        return ExitStatus::CLEAN;

    RehearsalRun::SetTimeZone(line);
    SchedulerLink link;
    const SchedulerLink::State state = link.GetState();
    const qint64 processId = link.ProcessId();
    StatusReport report{Moment::Now_ms(), state, processId, ProcessStart::Of_ms(processId),
                        ControlOptions::SchedulePath(line, state.fileName)};
    report.peers = PeerPresence::Of(link.Bus().ServiceNames());
    LookAtFile(line, report);
    if (!state.isEnabled)
    {
        report.playing.clear();
        report.next.reset();
    }
    report.log = line.Has(LOG) ? line.Value(LOG) : QStringLiteral("the journal");
    report.records =
        line.Has(LOG) ? LogRecords::OfFile(line.Value(LOG), LAST_RECORDS) : LogRecords::OfJournal(LAST_RECORDS);
    Terminal::Print(ControlOptions::WantsJson(line) ? StatusText::Json(report) : StatusText::Lines(report));
    return ExitStatus::CLEAN;
}

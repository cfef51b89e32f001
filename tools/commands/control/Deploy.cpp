#include "ControlOptions.h"
#include "DeployPlan.h"
#include "base/ExitStatus.h"
#include "base/Moment.h"
#include "base/Terminal.h"
#include "base/ToolError.h"
#include "commands/Commands.h"
#include "commands/RehearsalRun.h"
#include "control/Deployment.h"
#include "control/ProcessStart.h"

#include <QThread>

namespace
{

const QString NOW = QStringLiteral("now");
const QString STRICT = QStringLiteral("strict");
const QString UNDO = QStringLiteral("undo");
const QString DASHED_PLAYLISTS = QStringLiteral("--playlists");

constexpr int SLICE_MS = 200; // how often the clock is looked at, which somebody may set

// Shows what a check finds, and what changes. The check's status.
int Judge(const CommandLine& line, const Deployment& deployment, const DeployPlan& plan)
{
    QStringList check{plan.file, DASHED_PLAYLISTS, plan.playlists};
    if (line.Has(STRICT))
        check.append(QStringLiteral("--strict"));
    const int status = Commands::Check(check);
    if (status == ExitStatus::CLEAN && plan.before)
        static_cast<void>(
            Commands::Diff({deployment.SchedulePath(), plan.file, QStringLiteral("--old-playlists"),
                            deployment.PlaylistFolder(), QStringLiteral("--new-playlists"), plan.playlists}));
    return status;
}

void WaitForQuiet(const Deployment& deployment, const DeployPlan& plan, qint64 since_ms)
{
    for (bool isTold = false;; isTold = true)
    {
        const qint64 now_ms = Moment::Now_ms();
        const QuietMoment::Result quiet = plan.Quiet(deployment, since_ms, now_ms);
        if (quiet.moment_ms == now_ms)
            return;
        if (!quiet.moment_ms)
            throw ToolError(QStringLiteral("there is no quiet moment within a day: %1\nnothing was changed; --now does "
                                           "not wait")
                                .arg(DeployPlan::Words(*quiet.first)));
        if (!isTold)
            Terminal::Print(QStringLiteral("waits until %1 %2: %3\n")
                                .arg(Moment::DateText(Moment::LocalDate(*quiet.moment_ms)),
                                     Moment::TimeText(*quiet.moment_ms), DeployPlan::Words(*quiet.first)));
        for (qint64 clock_ms = now_ms; clock_ms >= now_ms && clock_ms < *quiet.moment_ms; clock_ms = Moment::Now_ms())
            QThread::msleep(SLICE_MS);
    }
}

// What is there after a failure, in words: the earlier files, as far as that is possible.
QString BringBack(const Deployment& deployment, const FileSet& before)
{
    try
    {
        if (deployment.InPlaceOf(before) != before)
            deployment.Install(before);
        return QStringLiteral("\nthe earlier schedule is in its place");
    }
    catch (const ToolError& error)
    {
        return QStringLiteral("\nthe earlier schedule stands in %1: %2")
            .arg(deployment.KeptSchedulePath(), QString::fromStdString(error.what()));
    }
}

// Puts the files in place and has the daemon load them; where it does not, the earlier ones come back.
void SwitchOver(SchedulerLink& link, const Deployment& deployment, const DeployPlan& plan)
{
    if (plan.before)
        deployment.Keep(*plan.before);
    try
    {
        deployment.Install(plan.files);
        link.Reload();
    }
    catch (const ToolError& error)
    {
        if (!plan.before)
            throw;
        throw ToolError(QString::fromStdString(error.what()) + BringBack(deployment, *plan.before));
    }
}

// Whether the daemon runs what was checked.
void ReadBack(SchedulerLink& link, const Deployment& deployment, const DeployPlan& plan, const QString& name)
{
    const SchedulerLink::State state = link.GetState();
    if (state.fileName != name || deployment.InPlaceOf(plan.files) != plan.files)
        throw ToolError(QStringLiteral("somebody else changes what the daemon runs: it is %1 now")
                            .arg(ControlOptions::StateWords(state)));
    Terminal::Print(QStringLiteral("deployed: %1%2\n")
                        .arg(Terminal::Harmless(deployment.SchedulePath()),
                             state.isEnabled
                                 ? QString()
                                 : QStringLiteral(" (the daemon is disabled, and loads it when it is enabled)")));
    if (plan.before)
        Terminal::Print(QStringLiteral("ozna-schedule deploy --undo brings the earlier one back\n"));
}

} // namespace

int Commands::Deploy(const QStringList& arguments)
{
    CommandLine line(QStringLiteral("deploy"),
                     QStringLiteral("Puts FILE in the place of the schedule that the daemon runs, with the playlists\n"
                                    "that it names: checks it, shows what changes, waits until nothing plays and\n"
                                    "nothing starts, replaces the files whole, and has the daemon load them."),
                     {QStringLiteral("[FILE]")});
    ControlOptions::AddData(line);
    line.AddFlag(NOW, QStringLiteral("waits for no quiet moment: what plays is stopped"));
    line.AddFlag(STRICT, QStringLiteral("refuses a schedule with warnings as well"));
    line.AddFlag(UNDO, QStringLiteral("brings back what was there before the last one"));
    RehearsalRun::AddPlaceOptions(line);
    if (!line.Parse(arguments))
        return ExitStatus::CLEAN;
    if (line.Has(UNDO) != line.Operands().isEmpty())
        throw ToolError(QStringLiteral("deploy needs a FILE, or --undo"));

    RehearsalRun::SetTimeZone(line);
    SchedulerLink link;
    const SchedulerLink::State state = link.GetState();
    const Deployment deployment(ControlOptions::DataFolder(line), state.fileName);
    const DeployPlan plan = line.Has(UNDO) ? DeployPlan::Undoing(deployment) : DeployPlan::Of(line, deployment);
    if (plan.IsInPlace())
    {
        Terminal::Print(QStringLiteral("nothing to do: %1 has that content\n").arg(deployment.SchedulePath()));
        return ExitStatus::CLEAN;
    }
    if (const int status = Judge(line, deployment, plan); status != ExitStatus::CLEAN)
    {
        Terminal::PrintError(QStringLiteral("ozna-schedule: not deployed: what runs stays as it is\n"));
        return status;
    }
    if (state.isEnabled && !line.Has(NOW))
        WaitForQuiet(deployment, plan, ProcessStart::Of_ms(link.ProcessId()).value_or(Moment::Now_ms()));
    if (!plan.IsUnchanged())
        throw ToolError(QStringLiteral("%1 has changed since it was checked: nothing was deployed").arg(plan.file));
    SwitchOver(link, deployment, plan);
    ReadBack(link, deployment, plan, state.fileName);
    return ExitStatus::CLEAN;
}

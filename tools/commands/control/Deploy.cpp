#include "ControlOptions.h"
#include "DeployPlan.h"
#include "SchedulerNames.h"
#include "base/ExitStatus.h"
#include "base/Moment.h"
#include "base/Terminal.h"
#include "base/ToolError.h"
#include "commands/Commands.h"
#include "commands/RehearsalRun.h"
#include "control/Deployment.h"
#include "control/FolderLock.h"
#include "control/ProcessStart.h"
#include "text/StringUtils.h"

#include <QFileInfo>
#include <QThread>

namespace
{

const QString NOW = QStringLiteral("now");
const QString STRICT = QStringLiteral("strict");
const QString UNDO = QStringLiteral("undo");
const QString DASHED_PLAYLISTS = QStringLiteral("--playlists");
const QString OPERANDS = QStringLiteral("--"); // what follows is no option

constexpr int SLICE_MS = 200; // how often the clock is looked at, which somebody may set

// Shows what a check finds, and what changes. The check's status; what ran before may come back in any case.
int Judge(const CommandLine& line, const Deployment& deployment, const DeployPlan& plan)
{
    QStringList check{DASHED_PLAYLISTS, plan.playlists};
    if (line.Has(STRICT))
        check.append(QStringLiteral("--strict"));
    const int status = Commands::Check(check + QStringList{OPERANDS, plan.file});
    const bool isFit = status == ExitStatus::CLEAN || plan.isUndo;
    if (isFit && plan.Replaces(deployment))
        static_cast<void>(Commands::Diff({QStringLiteral("--old-playlists"), deployment.PlaylistFolder(),
                                          QStringLiteral("--new-playlists"), plan.playlists, OPERANDS,
                                          deployment.SchedulePath(), plan.file}));
    const QStringList changed = plan.Changed();
    if (isFit && !changed.isEmpty())
        Terminal::Print(
            QStringLiteral("to be written: %1\n").arg(StringUtils::Harmless(changed.join(QStringLiteral(", ")))));
    return isFit ? int{ExitStatus::CLEAN} : status;
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

// The daemon as it was when the deployment began: another one, or another file, is another story.
struct Target
{
    SchedulerLink::State state;
    qint64 processId;

    [[nodiscard]] static Target Of(SchedulerLink& link) { return {link.GetState(), link.ProcessId()}; }

    [[nodiscard]] bool Is(const Target& other) const
    {
        return state.fileName == other.state.fileName && processId == other.processId;
    }
};

// Puts back what stood there, and tells what is there then.
QString BringBack(const Deployment& deployment, const DeployPlan& plan)
{
    try
    {
        deployment.Install(plan.before);
        if (!plan.isUndo)
            deployment.TakeBack();
        deployment.CleanUp();
        return QStringLiteral("\nthe earlier files are in their places; ozna-schedule reload has them loaded");
    }
    catch (const ToolError& error)
    {
        return QStringLiteral("\nthe earlier files are in %1: %2")
            .arg(QFileInfo(deployment.KeptSchedulePath()).path(), QString::fromStdString(error.what()));
    }
}

// What is kept is never the only copy of what is to come back: it is replaced before a deployment, and behind an
// undoing.
void SwitchOver(SchedulerLink& link, const Deployment& deployment, const DeployPlan& plan)
{
    deployment.CleanUp();
    if (!plan.isUndo)
        deployment.Keep(plan.before);
    try
    {
        deployment.Install(plan.files);
        link.Reload();
    }
    catch (const ToolError& error)
    {
        throw ToolError(QString::fromStdString(error.what()) + BringBack(deployment, plan));
    }
    if (plan.isUndo)
        deployment.Keep(plan.before);
    deployment.CleanUp();
}

// What became of it, as far as the daemon tells.
QString Told(const Deployment& deployment, const DeployPlan& plan, const SchedulerLink::State& state)
{
    QString text = QStringLiteral("deployed: %1\n").arg(StringUtils::Harmless(deployment.SchedulePath()));
    if (!state.isEnabled)
        text += QStringLiteral("the daemon is disabled, and loads it when it is enabled\n");
    if (state.fileName != QLatin1String(SchedulerNames::START_FILE))
        text += QStringLiteral("the daemon starts with %1, not with this file\n")
                    .arg(QLatin1String(SchedulerNames::START_FILE));
    if (plan.Replaces(deployment))
        text += QStringLiteral("ozna-schedule deploy --undo brings the earlier one back\n");
    return text;
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
    const Target target = Target::Of(link);
    const QString dataFolder = ControlOptions::DataFolder(line);
    const Deployment deployment(dataFolder, target.state.fileName);
    const DeployPlan plan = line.Has(UNDO) ? DeployPlan::Undoing(deployment) : DeployPlan::Of(line, deployment);
    if (const int status = Judge(line, deployment, plan); status != ExitStatus::CLEAN)
    {
        Terminal::PrintError(QStringLiteral("ozna-schedule: not deployed: what runs stays as it is\n"));
        return status;
    }
    if (target.state.isEnabled && !line.Has(NOW))
        WaitForQuiet(deployment, plan, ProcessStart::Of_ms(target.processId).value_or(Moment::Now_ms()));
    const FolderLock lock(dataFolder);
    plan.CheckUnchanged(deployment);
    if (!target.Is(Target::Of(link)))
        throw ToolError(QStringLiteral("the daemon was started anew or runs another file now: nothing was deployed"));
    if (plan.Changed().isEmpty())
    {
        // Whether the daemon has loaded them nobody can tell.
        link.Reload();
        Terminal::Print(QStringLiteral("%1 had that content: loaded anew\n").arg(deployment.SchedulePath()));
        return ExitStatus::CLEAN;
    }
    SwitchOver(link, deployment, plan);
    const Target after = Target::Of(link);
    if (!target.Is(after) || deployment.InPlaceOf(plan.files) != plan.files)
        throw ToolError(QStringLiteral("somebody else changes what the daemon runs: it is %1 now")
                            .arg(ControlOptions::StateWords(after.state)));
    Terminal::Print(Told(deployment, plan, after.state));
    return ExitStatus::CLEAN;
}

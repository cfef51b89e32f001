#include "DeployPlan.h"

#include "HeldLines.h"
#include "base/Moment.h"
#include "base/ToolError.h"
#include "check/Entry.h"
#include "control/WholeFile.h"
#include "engine/PlaylistFolder.h"
#include "engine/Rehearsal.h"
#include "engine/RunUp.h"
#include "text/StringUtils.h"
#include "words/EventText.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <set>

namespace
{

const QString PLAYLISTS = QStringLiteral("playlists");
const QString UPWARDS = QStringLiteral("..");

// The playlists that a schedule names, and that are there.
struct Named
{
    std::set<QString> inside = {};
    QString outside = {}; // the first that lies outside their folder, with its line; empty: none does
    HeldLines held = {};
};

Named NamedIn(const QString& file, const QString& folder)
{
    const Workspace workspace(file, folder);
    std::vector<ScheduleLine> lines = ScheduleLine::ReadFile(workspace, file);
    Named named{.held = HeldLines::Of(lines)};
    for (const Entry& entry : Entry::Of(lines))
    {
        if (!entry.Is(TASK_PLAY_PLAYLIST))
            continue;
        // The daemon puts the name behind its folder and a "/".
        const QString name = QDir::cleanPath(QStringLiteral("./") + entry.parameters[0]);
        if (name != UPWARDS && !name.startsWith(UPWARDS + u'/'))
            named.inside.insert(name);
        else if (named.outside.isEmpty())
            named.outside = QStringLiteral("%1:%2: the playlist %3 lies outside the folder of the playlists")
                                .arg(file, QString::number(entry.line.number), StringUtils::Harmless(name));
    }
    return named;
}

// Beside the schedule; the daemon's own where there is none.
QString PlaylistFolderOf(const QString& file, const Deployment& deployment)
{
    const PlaylistFolder folder = PlaylistFolder::Near(QFileInfo(file).absolutePath());
    return folder.missing.isEmpty() ? folder.path : deployment.PlaylistFolder();
}

// start_ms: the daemon loads the schedule then; none: it has been running for long.
std::vector<Event> Rehearsed(const QString& file, const QString& playlists, std::optional<qint64> start_ms,
                             qint64 now_ms, qint64 until_ms)
{
    const Workspace workspace(file, playlists);
    const qint64 from_ms = std::max(start_ms.value_or(0), now_ms - QuietMoment::MARGIN_MS);
    const std::vector<ScheduleLine> lines = ScheduleLine::ReadFile(workspace, file);
    Rehearsal::Plan plan{.start_ms = start_ms.value_or(from_ms), .from_ms = from_ms, .until_ms = until_ms};
    if (!start_ms)
    {
        plan.start_ms = RunUp(lines).Before(from_ms, until_ms).moment_ms;
        plan.isSettled = true;
    }
    Rehearsal rehearsal(workspace, plan);
    static_cast<void>(rehearsal.Run()); // nobody interrupts it
    return rehearsal.TakeEvents();
}

// With what stands in the places of its files.
DeployPlan With(DeployPlan plan, const Deployment& deployment)
{
    FileSet touched = plan.files;
    if (QFileInfo::exists(deployment.SchedulePath()))
    {
        for (const QString& name : NamedIn(deployment.SchedulePath(), deployment.PlaylistFolder()).inside)
            touched.try_emplace(Deployment::PlaylistKey(name));
    }
    plan.before = deployment.InPlaceOf(touched);
    return plan;
}

} // namespace

DeployPlan DeployPlan::Of(const CommandLine& line, const Deployment& deployment)
{
    const QString file = line.Operand(0);
    if (!QFileInfo(file).isFile())
        throw ToolError(QStringLiteral("%1: is not a file: deploy takes no pipe and no \"-\"").arg(file));
    DeployPlan plan{file, line.Has(PLAYLISTS) ? line.Value(PLAYLISTS) : PlaylistFolderOf(file, deployment), {}, {}};
    const Named named = NamedIn(plan.file, plan.playlists);
    if (!named.outside.isEmpty())
        throw ToolError(named.outside);
    if (named.held.taken == 0)
        throw ToolError(
            QStringLiteral("%1: the daemon takes no line of it; disable switches the daemon off").arg(file));
    plan.files.emplace(deployment.ScheduleKey(), WholeFile::Read(file));
    for (const QString& name : named.inside)
        plan.files.emplace(Deployment::PlaylistKey(name), WholeFile::Read(plan.playlists + u'/' + name));
    return With(std::move(plan), deployment);
}

DeployPlan DeployPlan::Undoing(const Deployment& deployment)
{
    DeployPlan plan{deployment.KeptSchedulePath(), deployment.KeptPlaylistFolder(), deployment.Kept(), {}, true};
    if (!plan.files.at(deployment.ScheduleKey()))
        throw ToolError(QStringLiteral("there is nothing to bring back: no earlier %1 was kept")
                            .arg(QFileInfo(deployment.SchedulePath()).fileName()));
    return With(std::move(plan), deployment);
}

bool DeployPlan::Replaces(const Deployment& deployment) const
{
    return before.at(deployment.ScheduleKey()).has_value();
}

QStringList DeployPlan::Changed() const
{
    QStringList changed;
    for (const auto& [key, content] : files)
    {
        if (content && before.at(key) != content)
            changed.append(key);
    }
    return changed;
}

void DeployPlan::CheckUnchanged(const Deployment& deployment) const
{
    for (const auto& [key, content] : files)
    {
        const bool isSchedule = key == deployment.ScheduleKey();
        const QString path = isSchedule ? file : playlists + key.mid(Deployment::PlaylistKey({}).size() - 1);
        if (WholeFile::Read(path) != content)
            throw ToolError(QStringLiteral("%1 has changed since it was checked: nothing was deployed").arg(path));
    }
    if (deployment.InPlaceOf(before) != before)
        throw ToolError(QStringLiteral("%1 or a playlist of it has changed since it was compared: nothing was deployed")
                            .arg(deployment.SchedulePath()));
}

QuietMoment::Result DeployPlan::Quiet(const Deployment& deployment, qint64 since_ms, qint64 now_ms) const
{
    if (!Replaces(deployment))
        return {now_ms, {}};
    const qint64 until_ms = now_ms + LONGEST_DAYS * Moment::DAY_MS;
    return QuietMoment::After(
        now_ms, until_ms,
        Rehearsed(deployment.SchedulePath(), deployment.PlaylistFolder(), std::min(since_ms, now_ms), now_ms, until_ms),
        Rehearsed(file, playlists, std::nullopt, now_ms, until_ms));
}

QString DeployPlan::Words(const QuietMoment::Reason& reason)
{
    const Event& event = reason.event;
    const QString subject = StringUtils::Harmless(EventText::Subject(event));
    const QString what = QStringLiteral("%1%2 (line %3)")
                             .arg(event.taskName, subject.isEmpty() ? subject : u' ' + subject)
                             .arg(event.lineNumber);
    const qint64 start_ms = event.Start_ms();
    if (!event.plays)
        return QStringLiteral("%1 at %2").arg(what, Moment::TimeText(start_ms));
    if (event.type == TASK_PLAY_MESSAGE)
        return QStringLiteral("%1 plays from %2 on, a minute as far as is known").arg(what, Moment::TimeText(start_ms));
    return event.end_ms == Event::OPEN
               ? QStringLiteral("%1 plays from %2 on, without an end").arg(what, Moment::TimeText(start_ms))
               : QStringLiteral("%1 plays from %2 to %3")
                     .arg(what, Moment::TimeText(start_ms), Moment::TimeText(event.end_ms));
}

#include "DeployPlan.h"

#include "base/Moment.h"
#include "base/Terminal.h"
#include "base/ToolError.h"
#include "check/Entry.h"
#include "control/WholeFile.h"
#include "engine/PlaylistFolder.h"
#include "engine/Rehearsal.h"
#include "engine/RunUp.h"
#include "words/EventText.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <set>

namespace
{

const QString PLAYLISTS = QStringLiteral("playlists");
const QString UPWARDS = QStringLiteral("..");

QByteArray Content(const QString& path)
{
    const std::optional<QByteArray> content = WholeFile::Read(path);
    if (!content)
        throw ToolError(QStringLiteral("%1: there is no such file").arg(path));
    return *content;
}

// Of the playlists that are there.
std::set<QString> PlaylistNames(const QString& file, const QString& folder)
{
    const Workspace workspace(file, folder);
    std::vector<ScheduleLine> lines = ScheduleLine::ReadFile(workspace, file);
    std::set<QString> names;
    for (const Entry& entry : Entry::Of(lines))
    {
        if (!entry.Is(TASK_PLAY_PLAYLIST))
            continue;
        const QString name = QDir::cleanPath(entry.parameters[0]);
        if (name.startsWith(UPWARDS) || QDir::isAbsolutePath(name))
            throw ToolError(QStringLiteral("%1:%2: the playlist %3 lies outside the folder of the playlists")
                                .arg(file)
                                .arg(entry.line.number)
                                .arg(Terminal::Harmless(name)));
        names.insert(name);
    }
    return names;
}

void AddPlaylists(FileSet& files, const QString& file, const QString& folder)
{
    for (const QString& name : PlaylistNames(file, folder))
        files.playlists.emplace(name, Content(folder + u'/' + name));
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

DeployPlan Read(const QString& file, const QString& playlists, const Deployment& deployment)
{
    DeployPlan plan{file, playlists, {Content(file), {}}, {}};
    AddPlaylists(plan.files, file, playlists);
    plan.before = deployment.InPlaceOf(plan.files);
    if (plan.before)
        AddPlaylists(*plan.before, deployment.SchedulePath(), deployment.PlaylistFolder());
    return plan;
}

} // namespace

DeployPlan DeployPlan::Of(const CommandLine& line, const Deployment& deployment)
{
    const QString file = line.Operand(0);
    if (!QFileInfo(file).isFile())
        throw ToolError(QStringLiteral("%1: there is no such file").arg(file));
    return Read(file, line.Has(PLAYLISTS) ? line.Value(PLAYLISTS) : PlaylistFolderOf(file, deployment), deployment);
}

DeployPlan DeployPlan::Undoing(const Deployment& deployment)
{
    if (!QFileInfo::exists(deployment.KeptSchedulePath()))
        throw ToolError(QStringLiteral("there is nothing to bring back: no earlier schedule was kept"));
    return Read(deployment.KeptSchedulePath(), deployment.KeptPlaylistFolder(), deployment);
}

bool DeployPlan::IsInPlace() const
{
    return before && before->schedule == files.schedule && std::ranges::all_of(files.playlists, [&](const auto& entry) {
               const auto there = before->playlists.find(entry.first);
               return there != before->playlists.end() && there->second == entry.second;
           });
}

bool DeployPlan::IsUnchanged() const
{
    return WholeFile::Read(file) == files.schedule && std::ranges::all_of(files.playlists, [&](const auto& entry) {
               return WholeFile::Read(playlists + u'/' + entry.first) == entry.second;
           });
}

QuietMoment::Result DeployPlan::Quiet(const Deployment& deployment, qint64 since_ms, qint64 now_ms) const
{
    if (!before)
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
    const QString subject = Terminal::Harmless(EventText::Subject(event));
    const QString what = QStringLiteral("%1%2 (line %3)")
                             .arg(event.taskName, subject.isEmpty() ? subject : u' ' + subject)
                             .arg(event.lineNumber);
    const qint64 start_ms = std::max(event.moment_ms, event.due_ms);
    if (!event.plays)
        return QStringLiteral("%1 at %2").arg(what, Moment::TimeText(start_ms));
    return event.end_ms == Event::OPEN
               ? QStringLiteral("%1 plays from %2 on, without an end").arg(what, Moment::TimeText(start_ms))
               : QStringLiteral("%1 plays from %2 to %3")
                     .arg(what, Moment::TimeText(start_ms), Moment::TimeText(event.end_ms));
}

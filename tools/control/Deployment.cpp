#include "Deployment.h"

#include "WholeFile.h"
#include "base/ToolError.h"

#include <QDir>
#include <QFileInfo>

namespace
{

const QString SCHEDULES = QStringLiteral("/schedule/");
const QString PLAYLISTS = QStringLiteral("/playlists");
const QString KEPT = QStringLiteral("/deployed-before"); // in the data folder, built as that is
const QString KEPT_NEXT = QStringLiteral("/deployed-before.next");
const QString INSTALLED_NEXT = QStringLiteral("/deployed.next");

void Remove(const QString& folder)
{
    QDir directory(folder);
    if (directory.exists() && !directory.removeRecursively())
        throw ToolError(QStringLiteral("%1: cannot be removed").arg(folder));
}

} // namespace

Deployment::Deployment(const QString& dataFolder, const QString& schedule)
    : m_dataFolder(QDir::cleanPath(dataFolder))
    , m_schedule(schedule)
{
    if (schedule.isEmpty() || schedule.contains(u'/'))
        throw ToolError(QStringLiteral("the daemon runs \"%1\", which is not the name of a file").arg(schedule));
}

QString Deployment::SchedulePath() const
{
    return m_dataFolder + SCHEDULES + m_schedule;
}

QString Deployment::PlaylistFolder() const
{
    return m_dataFolder + PLAYLISTS;
}

std::optional<FileSet> Deployment::InPlaceOf(const FileSet& files) const
{
    const std::optional<QByteArray> schedule = WholeFile::Read(SchedulePath());
    if (!schedule)
        return {};
    FileSet found{*schedule, {}};
    for (const auto& entry : files.playlists)
    {
        if (const auto content = WholeFile::Read(PlaylistFolder() + u'/' + entry.first))
            found.playlists.emplace(entry.first, *content);
    }
    return found;
}

void Deployment::WriteAt(const QString& folder, const FileSet& files) const
{
    Remove(folder); // of a deployment that was interrupted
    for (const auto& [name, content] : files.playlists)
        WholeFile::Write(folder + PLAYLISTS + u'/' + name, content);
    WholeFile::Write(folder + SCHEDULES + m_schedule, files.schedule);
}

void Deployment::Keep(const FileSet& files) const
{
    const QString made = m_dataFolder + KEPT_NEXT;
    WriteAt(made, files);
    WholeFile::Place(made, m_dataFolder + KEPT);
    Remove(made);
}

QString Deployment::KeptSchedulePath() const
{
    return m_dataFolder + KEPT + SCHEDULES + m_schedule;
}

QString Deployment::KeptPlaylistFolder() const
{
    return m_dataFolder + KEPT + PLAYLISTS;
}

void Deployment::Install(const FileSet& files) const
{
    const QString made = m_dataFolder + INSTALLED_NEXT;
    WriteAt(made, files);
    for (const auto& [name, content] : files.playlists)
    {
        const QString path = PlaylistFolder() + u'/' + name;
        if (WholeFile::Read(path) == content)
            continue;
        if (!QDir().mkpath(QFileInfo(path).path()))
            throw ToolError(QStringLiteral("%1: cannot be made").arg(QFileInfo(path).path()));
        WholeFile::Place(made + PLAYLISTS + u'/' + name, path);
    }
    WholeFile::Place(made + SCHEDULES + m_schedule, SchedulePath());
    Remove(made);
}

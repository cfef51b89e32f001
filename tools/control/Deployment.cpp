#include "Deployment.h"

#include "WholeFile.h"
#include "base/ToolError.h"

#include <QDir>
#include <QDirIterator>
#include <QFileInfo>

#include <cerrno>
#include <cstring>

namespace
{

const QString SCHEDULES = QStringLiteral("schedule/");
const QString PLAYLISTS = QStringLiteral("playlists");
const QString KEPT = QStringLiteral("/deployed-before/"); // in the data folder; a folder a schedule, built as that is
const QString KEPT_NEXT = QStringLiteral("/deployed-before.next");
const QString INSTALLED_NEXT = QStringLiteral("/deployed.next");

void Remove(const QString& folder)
{
    QDir directory(folder);
    if (directory.exists() && !directory.removeRecursively())
        throw ToolError(QStringLiteral("%1: cannot be removed").arg(folder));
}

void Make(const QString& folder)
{
    if (!QDir().mkpath(folder))
        throw ToolError(QStringLiteral("%1: %2").arg(folder, QString::fromLocal8Bit(std::strerror(errno))));
}

} // namespace

Deployment::Deployment(const QString& dataFolder, const QString& schedule)
    : m_dataFolder(QDir::cleanPath(dataFolder))
    , m_schedule(schedule)
{
    if (schedule.isEmpty() || schedule.contains(u'/'))
        throw ToolError(QStringLiteral("the daemon runs \"%1\", which is not the name of a file").arg(schedule));
    if (!QFileInfo(Path(SCHEDULES)).isDir())
        throw ToolError(QStringLiteral("%1: is no data folder, as it has no folder \"schedule\"").arg(m_dataFolder));
    if (QFileInfo(SchedulePath()).isSymLink())
        throw ToolError(QStringLiteral("%1: is a link, which is not replaced").arg(SchedulePath()));
}

QString Deployment::Path(const QString& key) const
{
    return m_dataFolder + u'/' + key;
}

QString Deployment::ScheduleKey() const
{
    return SCHEDULES + m_schedule;
}

QString Deployment::PlaylistKey(const QString& name)
{
    return PLAYLISTS + u'/' + name;
}

QString Deployment::SchedulePath() const
{
    return Path(ScheduleKey());
}

QString Deployment::PlaylistFolder() const
{
    return Path(PLAYLISTS);
}

FileSet Deployment::InPlaceOf(const FileSet& files) const
{
    FileSet found;
    for (const auto& entry : files)
        found.emplace(entry.first, WholeFile::Read(Path(entry.first)));
    return found;
}

QString Deployment::KeptSchedulePath() const
{
    return m_dataFolder + KEPT + m_schedule + u'/' + ScheduleKey();
}

QString Deployment::KeptPlaylistFolder() const
{
    return m_dataFolder + KEPT + m_schedule + u'/' + PLAYLISTS;
}

FileSet Deployment::Kept() const
{
    FileSet files{{ScheduleKey(), WholeFile::Read(KeptSchedulePath())}};
    const QString folder = KeptPlaylistFolder();
    for (QDirIterator file(folder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories); file.hasNext();)
    {
        const QString path = file.next();
        files.emplace(PlaylistKey(path.mid(folder.size() + 1)), WholeFile::Read(path));
    }
    return files;
}

void Deployment::WriteAt(const QString& folder, const FileSet& files) const
{
    Remove(folder);
    Make(folder + u'/' + PLAYLISTS);
    for (const auto& [key, content] : files)
    {
        if (content)
            WholeFile::Write(folder + u'/' + key, *content);
    }
}

void Deployment::Keep(const FileSet& files) const
{
    WriteAt(m_dataFolder + KEPT_NEXT, files);
    Make(m_dataFolder + KEPT);
    WholeFile::Place(m_dataFolder + KEPT_NEXT, m_dataFolder + KEPT + m_schedule);
}

void Deployment::TakeBack() const
{
    const QString kept = m_dataFolder + KEPT + m_schedule;
    if (QFileInfo::exists(m_dataFolder + KEPT_NEXT))
        WholeFile::Place(m_dataFolder + KEPT_NEXT, kept);
    else
        Remove(kept);
}

void Deployment::Install(const FileSet& files) const
{
    const QString made = m_dataFolder + INSTALLED_NEXT;
    WriteAt(made, files);
    const auto place = [&](const QString& key, const std::optional<QByteArray>& content) {
        if (!content || WholeFile::Read(Path(key)) == content)
            return;
        Make(QFileInfo(Path(key)).path());
        WholeFile::Place(made + u'/' + key, Path(key));
    };
    for (const auto& [key, content] : files)
    {
        if (key != ScheduleKey())
            place(key, content);
    }
    if (const auto schedule = files.find(ScheduleKey()); schedule != files.end())
        place(schedule->first, schedule->second);
}

void Deployment::CleanUp() const
{
    Remove(m_dataFolder + INSTALLED_NEXT);
    Remove(m_dataFolder + KEPT_NEXT);
}

#include "StandInPlaylists.h"

#include "base/ToolError.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace
{

const QString PLAYLISTS = QStringLiteral("/playlists");
const QString SCHEDULE = QStringLiteral("/schedule.csv");
const QByteArray TRACK = QByteArrayLiteral("stand-in.mp3;1\n");

} // namespace

StandInPlaylists::StandInPlaylists(const QString& playlists)
    : m_areTracksKnown(!playlists.isEmpty())
{
    const QString schedule = PrepareSchedule();
    m_workspace.emplace(schedule, m_areTracksKnown ? playlists : m_folder.path() + PLAYLISTS);
}

QString StandInPlaylists::PrepareSchedule() const
{
    if (!m_folder.isValid())
        throw ToolError(m_folder.errorString());
    QFile schedule(m_folder.path() + SCHEDULE);
    if (!QDir(m_folder.path()).mkdir(PLAYLISTS.mid(1)) || !schedule.open(QIODevice::WriteOnly))
        throw ToolError(QStringLiteral("%1: %2").arg(m_folder.path(), schedule.errorString()));
    return schedule.fileName();
}

ScheduleLine StandInPlaylists::Read(const QString& text, int number)
{
    ScheduleLine line = ScheduleLine::Read(*m_workspace, text, number);
    if (line.IsRejected() && !m_areTracksKnown && MakeMissing(line.rejected->file))
        line = ScheduleLine::Read(*m_workspace, text, number);
    for (TaskWarning& warning : line.warnings)
        warning.text = Readable(warning.text);
    return line;
}

QString StandInPlaylists::Readable(QString text) const
{
    return text.remove(m_folder.path() + u'/');
}

bool StandInPlaylists::MakeMissing(const QString& path) const
{
    const QString folder = m_workspace->Playlists().path + u'/';
    // A name that leads out of the folder is left alone.
    if (!path.startsWith(folder) || !QDir::cleanPath(path).startsWith(folder) || path.contains(QChar(u'\0')))
        return false;
    QFile file(path);
    return QDir().mkpath(QFileInfo(path).path()) && file.open(QIODevice::WriteOnly | QIODevice::NewOnly) &&
           file.write(TRACK) == TRACK.size();
}

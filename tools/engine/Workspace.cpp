#include "Workspace.h"

#include "DataRoot.h"
#include "ScheduleStream.h"
#include "Scheduler.h"
#include "base/SessionBus.h"
#include "base/ToolError.h"
#include "tasks/PlayPlaylist.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cstring>
#include <ctime>
#include <utility>

namespace
{

constexpr const char* ZONE_VARIABLE = "TZ";
constexpr const char* MACHINE_ZONE = ":/etc/localtime";
constexpr const char* CONFIGURATION_VARIABLE = "OZNA_CONFIG_FILE"; // of the platform's stand-in

const QString ZONE_FOLDER = QStringLiteral("/usr/share/zoneinfo/");
const QByteArray ZONE_MAGIC = QByteArrayLiteral("TZif"); // which all zones' files begin with
const QString SCHEDULE = QStringLiteral("schedule.csv");
const QString NAMELESS = QStringLiteral("schedule.csv"); // of this folder, whether it is there or not
const QString CONFIGURATION = QStringLiteral("/ozna.ini");

// Which the daemon's code sees; null: none.
const Workspace*& Used()
{
    static const Workspace* used = nullptr;
    return used;
}

// The folder holds tables and texts as well: the C library would take them for UTC.
bool IsZone(const QString& name)
{
    if (name.startsWith(u'/') || name.contains(QLatin1String("..")) || !QFileInfo(ZONE_FOLDER + name).isFile())
        return false;
    QFile file(ZONE_FOLDER + name);
    return file.open(QIODevice::ReadOnly) && file.read(ZONE_MAGIC.size()) == ZONE_MAGIC;
}

QString Reason()
{
    return QString::fromLocal8Bit(std::strerror(errno));
}

} // namespace

QString DataRoot()
{
    return Used() != nullptr ? Used()->Root() : QString();
}

Workspace::Use::Use(const Workspace& workspace)
    : m_before(std::exchange(Used(), &workspace))
{
    qputenv(CONFIGURATION_VARIABLE, QFile::encodeName(workspace.ConfigurationPath()));
}

Workspace::Use::~Use()
{
    Used() = m_before;
    if (m_before != nullptr)
        qputenv(CONFIGURATION_VARIABLE, QFile::encodeName(m_before->ConfigurationPath()));
}

// Before there is a folder, which would be left behind when reading waits and is ended.
std::optional<QByteArray> Workspace::ContentOf(const QString& file)
{
    if (ScheduleStream::Is(file))
        return ScheduleStream::Read(file);
    if (QFileInfo::exists(file) && !QFileInfo(file).isFile())
        throw ToolError(QStringLiteral("%1: is not a file").arg(file));
    QFile readable(file);
    if (!readable.open(QIODevice::ReadOnly))
        throw ToolError(QStringLiteral("%1: %2").arg(file, readable.errorString()));
    return std::nullopt;
}

Workspace::Workspace(const QString& file, const QString& playlists)
    : m_file(file)
    , m_playlists{playlists, {}}
    , m_content(ContentOf(file))
{
    // What comes by a stream stands in no folder but that of who asks.
    const QFileInfo schedule(m_content ? NAMELESS : file);
    if (m_playlists.path.isEmpty())
        m_playlists = PlaylistFolder::Near(schedule.absolutePath());
    if (!QFileInfo(m_playlists.path).isDir())
        throw ToolError(QStringLiteral("%1: is not a folder").arg(m_playlists.path));
    if (!m_folder.isValid())
        throw ToolError(m_folder.errorString());

    const Use use(*this);
    if (!QDir().mkpath(Scheduler::GetSchedulePath()))
        throw ToolError(QStringLiteral("%1: %2").arg(Scheduler::GetSchedulePath(), Reason()));
    if (m_content)
        Write(SchedulePath(), *m_content);
    else
        Link(schedule.absoluteFilePath(), SchedulePath());
    Link(QFileInfo(m_playlists.path).absoluteFilePath(), PlayPlaylist::GetPlaylistsPath());
    WriteConfiguration();
    m_removal.emplace(QStringList{SchedulePath(), Scheduler::GetSchedulePath(), PlayPlaylist::GetPlaylistsPath(),
                                  ConfigurationPath(), Root()});
}

Workspace::~Workspace() = default;

void Workspace::Link(const QString& target, const QString& name) const
{
    if (!QFile::link(target, name))
        throw ToolError(QStringLiteral("%1: %2").arg(name, Reason()));
}

QString Workspace::ConfigurationPath() const
{
    return Root() + CONFIGURATION;
}

void Workspace::WriteConfiguration() const
{
    Write(ConfigurationPath(), QByteArrayLiteral("[GENERAL]\nServerIp=") + SERVER + '\n');
}

void Workspace::Write(const QString& name, const QByteArray& content)
{
    QFile file(name);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size() || !file.flush())
        throw ToolError(QStringLiteral("%1: %2").arg(file.fileName(), file.errorString()));
}

QString Workspace::Readable(QString text) const
{
    const Use use(*this);
    return text.replace(PlayPlaylist::GetPlaylistsPath(), m_playlists.path);
}

QString Workspace::FileName()
{
    return SCHEDULE;
}

QString Workspace::SchedulePath() const
{
    const Use use(*this);
    return Scheduler::GetSchedulePath() + u'/' + SCHEDULE;
}

void Workspace::SetTimeZone(const QString& zone)
{
    if (zone.isEmpty())
        return;
    if (!IsZone(zone))
        throw ToolError(QStringLiteral("--tz: no time zone \"%1\" on this system").arg(zone));
    qputenv(ZONE_VARIABLE, zone.toLocal8Bit());
    ::tzset();
}

void Workspace::PrepareProcess()
{
    SessionBus::Hide();
    if (!qEnvironmentVariableIsSet(ZONE_VARIABLE))
        qputenv(ZONE_VARIABLE, MACHINE_ZONE);
}

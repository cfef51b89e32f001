#include "FaultRig.h"

#include "Wait.h"

#include <QDir>
#include <QFile>

namespace
{

// Longer than any time-out of the daemon.
constexpr int LOOP_MS = 90000;

// Of one track: with more, a playlist that is loaded again in its time would be made up for.
const QByteArray PLAYLIST = "first.mp3;60\n";
const QByteArray CONFIGURATION = "[GENERAL]\nServerIp=10.0.0.5\n";

void Write(const QString& path, const QByteArray& content)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("cannot write %s: %s", qPrintable(path), qPrintable(file.errorString()));
}

QStringList NoPeers()
{
    QStringList arguments{QStringLiteral("--quiet")};
    for (const char* peer : {"config", "update", "sound", "photo", "light", "freq", "gps", "network"})
        arguments +=
            {QStringLiteral("--absent"), QStringLiteral("com.kestrelix.ozna.%1interface").arg(QLatin1String(peer))};
    return arguments;
}

} // namespace

FaultRig::FaultRig(const QByteArray& schedule)
    : m_client(m_bus.Connection())
{
    if (!QDir(m_data.path()).mkdir(QStringLiteral("schedule")) ||
        !QDir(m_data.path()).mkdir(QStringLiteral("playlists")))
        qFatal("cannot make the data folder");
    Write(m_data.filePath(QStringLiteral("schedule/schedule.csv")), schedule);
    Write(m_data.filePath(QStringLiteral("playlists/day")), PLAYLIST);
    Write(m_data.filePath(QStringLiteral("ozna.ini")), CONFIGURATION);
    ReplaceDevice();
    m_second.emplace(m_bus, QStringLiteral("com.kestrelix.ozna.simulator2"));
    m_second->Start(NoPeers());
    QProcessEnvironment& environment = m_daemon.Environment();
    environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), m_bus.Address());
    environment.insert(QStringLiteral("OZNA_DATA_DIR"), m_data.path());
    environment.insert(QStringLiteral("OZNA_CONFIG_FILE"), m_data.filePath(QStringLiteral("ozna.ini")));
    m_time.Apply(environment);
}

FaultRig::~FaultRig() = default;

bool FaultRig::Start()
{
    // A light or a radio of this morning would be made up for.
    SetTime(QDate(2024, 1, 15), QTime(6, 0));
    m_daemon.Start();
    return m_daemon.WaitForLog(QStringLiteral("4 [Scheduler.cpp] Schedule started"));
}

void FaultRig::LoseDevice()
{
    m_device.reset();
    if (!m_bus.WaitForService(QStringLiteral("com.kestrelix.ozna.simulator"), false))
        qFatal("the earlier simulator is still on the bus");
}

void FaultRig::ReplaceDevice()
{
    LoseDevice();
    m_device.emplace(m_bus);
    m_device->Start();
}

bool FaultRig::WaitForLoop()
{
    return WaitUntil([this] { return m_client.Call("IsEnabled") == QStringLiteral("0,true,schedule.csv"); }, LOOP_MS);
}

void FaultRig::SetTime(const QDate& day, const QTime& time)
{
    m_time.Set(QDateTime(day, time, Qt::UTC));
}

void FaultRig::AdvanceTo(const QDate& day, const QTime& time)
{
    const QDateTime target(day, time, Qt::UTC);
    if (m_time.Now() < target)
        m_time.Set(target);
}

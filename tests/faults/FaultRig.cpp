#include "FaultRig.h"

#include "Wait.h"

#include <QDir>
#include <QFile>

using namespace Qt::StringLiterals;

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

} // namespace

FaultRig::FaultRig(const QByteArray& schedule)
    : m_client(m_bus.Connection())
{
    if (!QDir(m_data.path()).mkdir(u"schedule"_s) || !QDir(m_data.path()).mkdir(u"playlists"_s))
        qFatal("cannot make the data folder");
    Write(m_data.filePath(u"schedule/schedule.csv"_s), schedule);
    Write(m_data.filePath(u"playlists/day"_s), PLAYLIST);
    Write(m_data.filePath(u"ozna.ini"_s), CONFIGURATION);
    ReplaceDevice();
    m_second.emplace(m_bus, u"com.kestrelix.ozna.simulator2"_s);
    m_second->StartWithoutPeers();
    QProcessEnvironment& environment = m_daemon.Environment();
    environment.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, m_bus.Address());
    environment.insert(u"OZNA_DATA_DIR"_s, m_data.path());
    environment.insert(u"OZNA_CONFIG_FILE"_s, m_data.filePath(u"ozna.ini"_s));
    m_time.Apply(environment);
}

FaultRig::~FaultRig() = default;

bool FaultRig::Start()
{
    // A light or a radio of this morning would be made up for.
    SetTime(QDate(2024, 1, 15), QTime(6, 0));
    m_daemon.Start();
    return m_daemon.WaitForLog(u"4 [Scheduler.cpp] Schedule started"_s);
}

void FaultRig::LoseDevice()
{
    m_device.reset();
    if (!m_bus.WaitForService(u"com.kestrelix.ozna.simulator"_s, false))
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
    return WaitUntil([this] { return m_client.Call("IsEnabled") == u"0,true,schedule.csv"_s; }, LOOP_MS);
}

void FaultRig::SetTime(const QDate& day, const QTime& time)
{
    m_time.Set(day, time);
}

void FaultRig::AdvanceTo(const QDate& day, const QTime& time)
{
    const QDateTime target(day, time, Qt::UTC);
    if (m_time.Now() < target)
        m_time.Set(target);
}

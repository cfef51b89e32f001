#include "BusTest.h"

#include <QDir>

#include <csignal>

using namespace Qt::StringLiterals;

void BusTest::WriteFile(const QString& path, const QByteArray& content)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("cannot write %s: %s", qPrintable(path), qPrintable(file.errorString()));
}

void BusTest::init()
{
    m_data.emplace();
    if (!QDir(m_data->path()).mkdir(u"schedule"_s) || !QDir(m_data->path()).mkdir(u"playlists"_s))
        qFatal("cannot make the data folder");
    WriteFile(DataPath(u"ozna.ini"_s), "[GENERAL]\nServerIp=10.0.0.5\n");
    m_bus.emplace();
    StartDevice();
    m_time.emplace();
    m_time->Set(MONDAY, {8, 29, 49});
    m_client.emplace(m_bus->Connection());
    UseDaemon(u"ozna-scheduler-local"_s);
    m_time->Apply(m_daemon->Environment());
}

void BusTest::cleanup()
{
    const QStringList unexpected = m_daemon->Take(2);
    m_client.reset();
    m_daemon.reset();
    m_device.reset();
    m_bus.reset();
    m_data.reset();
    COMPARE_LINES(unexpected, QStringList());
}

std::unique_ptr<DaemonProcess> BusTest::UseDaemon(const QString& program)
{
    std::unique_ptr<DaemonProcess> earlier = std::exchange(m_daemon, std::make_unique<DaemonProcess>(program));
    QProcessEnvironment& environment = m_daemon->Environment();
    environment.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, m_bus->Address());
    environment.insert(u"OZNA_DATA_DIR"_s, m_data->path());
    environment.insert(u"OZNA_CONFIG_FILE"_s, DataPath(u"ozna.ini"_s));
    return earlier;
}

bool BusTest::IsSanitized()
{
    return OZNA_SANITIZED;
}

bool BusTest::IsLong()
{
    return qEnvironmentVariableIsSet("OZNA_LONG_TESTS");
}

QString BusTest::DataPath(const QString& name) const
{
    return m_data->filePath(name);
}

void BusTest::WriteSchedule(const QByteArray& content, const QString& name) const
{
    WriteFile(DataPath(u"schedule/"_s + name), content);
}

void BusTest::WritePlaylist(const QByteArray& content, const QString& name) const
{
    WriteFile(DataPath(u"playlists/"_s + name), content);
}

void BusTest::StopDevice()
{
    m_device.reset();
    if (!m_bus->WaitForService(u"com.kestrelix.ozna.simulator"_s, false))
        qFatal("the simulator is still on the bus");
}

void BusTest::StartDevice()
{
    StopDevice();
    m_device.emplace(*m_bus);
    m_device->Start();
}

bool BusTest::StartDaemon()
{
    m_daemon->Start();
    return m_daemon->WaitForLog(u"4 [Scheduler.cpp] Schedule started"_s);
}

bool BusTest::StartAndTakeLog()
{
    const bool isStarted = StartDaemon();
    static_cast<void>(m_daemon->Take());
    return isStarted;
}

bool BusTest::WaitForPasses(int count)
{
    const auto passes = [this] { return m_daemon->Log().count(u"9 [Scheduler.cpp] Checking far actions"_s); };
    const qsizetype before = passes();
    return WaitUntil([&] { return passes() >= before + count; });
}

bool BusTest::RunDue(qsizetype actions)
{
    const QString early = u"4 [Scheduler.cpp] EARLY action found: "_s;
    const bool isFound = WaitUntil([&] { return m_daemon->Log().filter(early).size() >= actions; });
    m_time->Set(MONDAY, {8, 30});
    return isFound;
}

QStringList BusTest::TakeTaskLines(unsigned int maxLevel)
{
    return m_daemon->Take(maxLevel).filter(u"[tasks/"_s);
}

int BusTest::StopDaemon()
{
    m_daemon->Signal(SIGTERM);
    return m_daemon->WaitForExit();
}

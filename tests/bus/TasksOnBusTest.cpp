#include "TasksOnBusTest.h"

#include "LogRecorder.h"
#include "peers/Peers.h"
#include "tasks/Photo.h"
#include "tasks/PlayMessage.h"
#include "tasks/PlayPlaylist.h"
#include "tasks/PlayStream.h"

#include <QDBusConnectionInterface>

const QString TasksOnBusTest::SECOND = QStringLiteral("com.kestrelix.ozna.simulator2");

std::unique_ptr<Task> TasksOnBusTest::MakeTask(const QString& kind)
{
    const QString time = QStringLiteral("08:30:00");
    const QString noVolume = QStringLiteral("-1");
    if (kind == QStringLiteral("message"))
        return std::make_unique<PlayMessage>(time, QStringLiteral("gong.mp3"), noVolume);
    if (kind == QStringLiteral("playlist"))
        return std::make_unique<PlayPlaylist>(time, QStringLiteral("day"), noVolume, QStringLiteral("morning"));
    if (kind == QStringLiteral("stream"))
        return std::make_unique<PlayStream>(QStringLiteral("8554/live"), noVolume);
    return std::make_unique<Photo>(kind == QStringLiteral("photo") ? QString() : QStringLiteral("10,3"));
}

SimulatorProcess& TasksOnBusTest::StartSecond()
{
    QStringList arguments{QStringLiteral("--quiet")};
    for (const char* peer : {"config", "update", "sound", "photo", "light", "freq", "gps", "network"})
        arguments +=
            {QStringLiteral("--absent"), QStringLiteral("com.kestrelix.ozna.%1interface").arg(QLatin1String(peer))};
    m_second.emplace(*m_bus, SECOND);
    m_second->Start(arguments);
    return *m_second;
}

void TasksOnBusTest::HandleAll()
{
    // The bus answers after all that it has delivered before.
    QVERIFY(QDBusConnection::sessionBus().interface()->isServiceRegistered(SECOND).isValid());
    QCoreApplication::sendPostedEvents();
}

void TasksOnBusTest::initTestCase()
{
    m_bus.emplace();
    qputenv("DBUS_SESSION_BUS_ADDRESS", m_bus->Address().toUtf8());
    QVERIFY(QDBusConnection::sessionBus().isConnected());
    LogRecorder::Install();
    m_data.emplace();
    m_data->WritePlaylist("first.mp3;60\nsecond.mp3;30\n", QStringLiteral("day"));
    const QString configuration = m_data->Path() + QStringLiteral("/ozna.ini");
    QFile file(configuration);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write("[GENERAL]\nServerIp=10.0.0.5\n") > 0);
    qputenv("OZNA_CONFIG_FILE", QFile::encodeName(configuration));
}

void TasksOnBusTest::init()
{
    m_device.emplace(*m_bus);
    m_device->Start();
    Peers::CreateProxies();
    LogRecorder::Clear();
}

void TasksOnBusTest::cleanup()
{
    Peers::DeleteProxies();
    m_second.reset();
    m_device.reset();
    QVERIFY(m_bus->WaitForService(QStringLiteral("com.kestrelix.ozna.simulator"), false));
    QVERIFY(m_bus->WaitForService(SECOND, false));
    EXPECT_LOG(2, {});
}

void TasksOnBusTest::cleanupTestCase()
{
    m_data.reset();
    QDBusConnection::disconnectFromBus(QDBusConnection::sessionBus().name());
    m_bus.reset();
}

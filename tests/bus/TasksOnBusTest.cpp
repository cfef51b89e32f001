#include "TasksOnBusTest.h"

#include "LogRecorder.h"
#include "peers/Peers.h"
#include "tasks/Photo.h"
#include "tasks/PlayMessage.h"
#include "tasks/PlayPlaylist.h"
#include "tasks/PlayStream.h"

#include <QDBusConnectionInterface>

using namespace Qt::StringLiterals;

const QString TasksOnBusTest::SECOND = u"com.kestrelix.ozna.simulator2"_s;

std::unique_ptr<Task> TasksOnBusTest::MakeTask(QByteArrayView kind)
{
    const QString time = u"08:30:00"_s;
    const QString noVolume = u"-1"_s;
    if (kind == "message")
        return std::make_unique<PlayMessage>(time, u"gong.mp3"_s, noVolume);
    if (kind == "playlist")
        return std::make_unique<PlayPlaylist>(time, u"day"_s, noVolume, u"morning"_s);
    if (kind == "stream")
        return std::make_unique<PlayStream>(u"8554/live"_s, noVolume);
    return std::make_unique<Photo>(kind == "photo" ? QString() : u"10,3"_s);
}

SimulatorProcess& TasksOnBusTest::StartSecond()
{
    m_second.emplace(*m_bus, SECOND);
    m_second->StartWithoutPeers();
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
    m_data->WritePlaylist("first.mp3;60\nsecond.mp3;30\n", u"day"_s);
    const QString configuration = m_data->Path() + u"/ozna.ini"_s;
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
    QVERIFY(m_bus->WaitForService(u"com.kestrelix.ozna.simulator"_s, false));
    QVERIFY(m_bus->WaitForService(SECOND, false));
    EXPECT_LOG(2, {});
}

void TasksOnBusTest::cleanupTestCase()
{
    m_data.reset();
    QDBusConnection::disconnectFromBus(QDBusConnection::sessionBus().name());
    m_bus.reset();
}

#include "DaemonProcess.h"
#include "DatagramSocket.h"
#include "PrivateBus.h"
#include "Suite.h"
#include "Wait.h"
#include "peers/LightManager.h"
#include "peers/SoundManager.h"

#include <QDBusPendingCall>
#include <QDBusReply>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <cstdlib>

using namespace Qt::StringLiterals;

// The player as a process of its own.
class tst_PlayerProcess final : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();
    void EndsWellWithASignal_data();
    void EndsWellWithASignal();
    void TellsEachEndBeforeItEnds();
    void KeepsTheVolumes();
    void WithoutItsNameItFails();
    void WithoutABusItFails();
    void FailsWhenTheBusIsGone();
    void TheLightsAreLeftAloneUnlessTheyAreSetUp();
    void WhereAnotherHasTheLightsItPlaysAllTheSame();
    void GivesSignsOfLife();

private Q_SLOTS:
    void OnStreamEnabled(bool enabled) { m_streamSignals.append(enabled); }

private:
    void WriteSettings(const QByteArray& lines);
    // A process that is not started yet.
    void MakePlayer();
    void Start();
    [[nodiscard]] int Stop();
    // The status of a call, -1 with a bus error.
    int Call(const QString& method, const QVariantList& arguments = {});

    std::optional<QTemporaryDir> m_folder;
    std::optional<PrivateBus> m_bus;
    std::optional<DaemonProcess> m_player;
    QList<bool> m_streamSignals;
};

void tst_PlayerProcess::init()
{
    m_folder.emplace();
    m_bus.emplace();
    MakePlayer();
    WriteSettings({});
    m_streamSignals.clear();
}

void tst_PlayerProcess::MakePlayer()
{
    m_player.emplace(u"ozna-player"_s);
    QProcessEnvironment& environment = m_player->Environment();
    environment.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, m_bus->Address());
    environment.insert(u"OZNA_CONFIG_FILE"_s, m_folder->filePath(u"ozna.ini"_s));
    environment.insert(u"XDG_STATE_HOME"_s, m_folder->path());
    environment.remove(u"STATE_DIRECTORY"_s);
}

void tst_PlayerProcess::cleanup()
{
    const QStringList unexpected = m_player->Take(2);
    m_player.reset();
    m_bus.reset();
    QCOMPARE(unexpected, QStringList());
}

void tst_PlayerProcess::WriteSettings(const QByteArray& lines)
{
    QFile file(m_folder->filePath(u"ozna.ini"_s));
    const QByteArray content = "[PLAYER]\nOutput=file:" + m_folder->filePath(u"sound.raw"_s).toUtf8() + '\n' + lines;
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("cannot write the settings");
}

void tst_PlayerProcess::Start()
{
    m_player->Start();
    QVERIFY(m_bus->WaitForService(QString::fromLatin1(SoundManager::SERVICE)));
    QVERIFY(m_player->WaitForLog(u"4 [main.cpp] Player ready (from %1)"_s.arg(QLatin1String(SoundManager::PATH))));
}

int tst_PlayerProcess::Stop()
{
    m_player->Signal(SIGTERM);
    return m_player->WaitForExit();
}

int tst_PlayerProcess::Call(const QString& method, const QVariantList& arguments)
{
    QDBusMessage call = QDBusMessage::createMethodCall(QString::fromLatin1(SoundManager::SERVICE),
                                                       QString::fromLatin1(SoundManager::PATH),
                                                       u"com.kestrelix.ozna.soundinterface"_s, method);
    call.setArguments(arguments);
    const QDBusReply<int> reply = m_bus->Connection().call(call);
    return reply.isValid() ? reply.value() : -1;
}

void tst_PlayerProcess::EndsWellWithASignal_data()
{
    QTest::addColumn<int>("signal");
    QTest::newRow("SIGTERM") << SIGTERM;
    QTest::newRow("SIGINT") << SIGINT;
}

void tst_PlayerProcess::EndsWellWithASignal()
{
    QFETCH(const int, signal);
    Start();
    m_player->Signal(signal);
    QCOMPARE(m_player->WaitForExit(), EXIT_SUCCESS);
    QVERIFY(m_bus->WaitForService(QString::fromLatin1(SoundManager::SERVICE), false));
}

void tst_PlayerProcess::TellsEachEndBeforeItEnds()
{
    QDBusConnection client = m_bus->Connection();
    QVERIFY(client.connect(QString::fromLatin1(SoundManager::SERVICE), QString::fromLatin1(SoundManager::PATH),
                           u"com.kestrelix.ozna.soundinterface"_s, u"StreamEnabled"_s, this,
                           SLOT(OnStreamEnabled(bool))));
    Start();
    // Nobody answers at the address that is kept for examples.
    QCOMPARE(Call(u"PlayStream"_s, {u"rtsp://192.0.2.1:8554/live"_s, 0U}), 0);
    QCOMPARE(Stop(), EXIT_SUCCESS);
    QVERIFY(WaitUntil([this] { return !m_streamSignals.isEmpty(); }));
    QCOMPARE(m_streamSignals, QList<bool>{false});
    static_cast<void>(m_player->Take());
}

void tst_PlayerProcess::KeepsTheVolumes()
{
    Start();
    QCOMPARE(Call(u"SetMasterVolume"_s, {35.0}), 0);
    QCOMPARE(Stop(), EXIT_SUCCESS);
    QFile file(m_folder->filePath(u"ozna-player/volumes.ini"_s));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), QByteArray("[volumes]\nmaster=35\n"));
}

void tst_PlayerProcess::WithoutItsNameItFails()
{
    QVERIFY(m_bus->Connection().registerService(QString::fromLatin1(SoundManager::SERVICE)));
    m_player->Start();
    QCOMPARE(m_player->WaitForExit(), EXIT_FAILURE);
    QCOMPARE(
        m_player->Take(2),
        QStringList(
            u"1 [service/Exports.cpp] DBUS: Can't register service [%1]: another process may have it (from %2)"_s.arg(
                QLatin1String(SoundManager::SERVICE), QLatin1String(SoundManager::PATH))));
}

void tst_PlayerProcess::WithoutABusItFails()
{
    m_player->Environment().insert(u"DBUS_SESSION_BUS_ADDRESS"_s, u"unix:path=/nonexistent"_s);
    m_player->Start();
    QCOMPARE(m_player->WaitForExit(), EXIT_FAILURE);
    QCOMPARE(m_player->Take(2), QStringList(u"1 [main.cpp] DBUS: Can't connect session bus (from %1)"_s.arg(
                                    QLatin1String(SoundManager::PATH))));
}

void tst_PlayerProcess::FailsWhenTheBusIsGone()
{
    Start();
    m_bus->Kill();
    QCOMPARE(m_player->WaitForExit(), EXIT_FAILURE);
    QCOMPARE(m_player->Take(2), QStringList(u"1 [main.cpp] DBUS: Session bus connection lost (from %1)"_s.arg(
                                    QLatin1String(SoundManager::PATH))));
}

void tst_PlayerProcess::TheLightsAreLeftAloneUnlessTheyAreSetUp()
{
    Start();
    QVERIFY(m_bus->WaitForService(QString::fromLatin1(LightManager::SERVICE), false));
    QCOMPARE(Stop(), EXIT_SUCCESS);
    WriteSettings("Light=no-such-lamp\n");
    MakePlayer();
    Start();
    QVERIFY(m_bus->WaitForService(QString::fromLatin1(LightManager::SERVICE)));
    QCOMPARE(Stop(), EXIT_SUCCESS);
    QCOMPARE(m_player->Take(2),
             QStringList(u"2 [service/LightObject.cpp] There is no light no-such-lamp in /sys/class/leds or "
                         "/sys/class/backlight (from %1)"_s.arg(QLatin1String(SoundManager::PATH))));
}

void tst_PlayerProcess::WhereAnotherHasTheLightsItPlaysAllTheSame()
{
    QVERIFY(m_bus->Connection().registerService(QString::fromLatin1(LightManager::SERVICE)));
    WriteSettings("Light=no-such-lamp\n");
    Start();
    QCOMPARE(Call(u"SetMasterVolume"_s, {35.0}), 0);
    QCOMPARE(Stop(), EXIT_SUCCESS);
    QCOMPARE(
        m_player->Take(2).mid(1),
        QStringList(
            {u"1 [service/Exports.cpp] DBUS: Can't register service [%1]: another process may have it (from %2)"_s.arg(
                 QLatin1String(LightManager::SERVICE), QLatin1String(SoundManager::PATH)),
             u"2 [main.cpp] The lights are left alone (from %1)"_s.arg(QLatin1String(SoundManager::PATH))}));
}

void tst_PlayerProcess::GivesSignsOfLife()
{
    const QString socket = m_folder->filePath(u"notify"_s);
    const DatagramSocket manager(socket);
    m_player->Environment().insert(u"NOTIFY_SOCKET"_s, socket);
    m_player->Environment().insert(u"WATCHDOG_USEC"_s, u"60000000"_s);
    Start();
    QVERIFY(WaitUntil([&] { return manager.Read().contains("WATCHDOG=1"); }));
    QCOMPARE(Stop(), EXIT_SUCCESS);
    QCOMPARE(m_player->Take(2), QStringList());
    // A manager that cannot be reached is told of, and no hindrance.
    MakePlayer();
    m_player->Environment().insert(u"NOTIFY_SOCKET"_s, u"/nonexistent"_s);
    m_player->Environment().insert(u"WATCHDOG_USEC"_s, u"60000000"_s);
    Start();
    QCOMPARE(Stop(), EXIT_SUCCESS);
    QCOMPARE(m_player->Take(2), QStringList(u"2 [main.cpp] Can't reach the service manager's watchdog (from %1)"_s.arg(
                                    QLatin1String(SoundManager::PATH))));
}

OZNA_CASE(PlayerProcess, tst_PlayerProcess)

#include "tst_PlayerProcess.moc"

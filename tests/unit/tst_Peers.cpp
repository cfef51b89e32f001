#include "RequestTable.h"
#include "Scheduler.h"
#include "Suite.h"
#include "UnitTest.h"
#include "peers/PeerCall.h"
#include "peers/Peers.h"

#include <ConfigProxy.h>
#include <CpuFreqManagerProxy.h>
#include <GpsManagerProxy.h>
#include <LightManagerProxy.h>
#include <NetworkManagerProxy.h>
#include <PhotoManagerProxy.h>
#include <SoundManagerProxy.h>
#include <UpdateManagerProxy.h>

#include <functional>

using namespace Qt::StringLiterals;

// A row names the place of a proxy: each row has a proxy of its own there.
using ProxyOf = std::function<QDBusAbstractInterface*()>;

class PeersTest final : public UnitTest
{
    Q_OBJECT
private Q_SLOTS:
    void TheSharedProxiesAreAddressed_data();
    void TheSharedProxiesAreAddressed();
    void CreatingThemLogsNothing();
    void ACallWithoutABusFailsAtOnce();
    void ARecorderTakesTheBusesPlace();
};

void PeersTest::TheSharedProxiesAreAddressed_data()
{
    QTest::addColumn<ProxyOf>("proxyOf");
    QTest::addColumn<QString>("manager");
    QTest::addColumn<QString>("object");
    QTest::addColumn<QString>("interface");
    QTest::addColumn<int>("timeout_ms"); // -1: the bus library's own
    const auto row = [](const char* name, const ProxyOf& proxyOf, const char* manager, const char* object,
                        const char* interface, int timeout_ms) {
        QTest::newRow(name) << proxyOf << QString::fromLatin1(manager) << QString::fromLatin1(object)
                            << QString::fromLatin1(interface) << timeout_ms;
    };
    row(
        "configuration", []() -> QDBusAbstractInterface* { return Scheduler::m_configManProxy; }, "configmanager",
        "configobj", "configinterface", 2000);
    row(
        "update", []() -> QDBusAbstractInterface* { return Scheduler::m_updateManProxy; }, "updatemanager", "updateobj",
        "updateinterface", 2000);
    row(
        "sound", []() -> QDBusAbstractInterface* { return Scheduler::m_soundManProxy; }, "soundmanager", "soundobj",
        "soundinterface", SOUND_TIMEOUT_MS);
    row(
        "photo", []() -> QDBusAbstractInterface* { return Scheduler::m_photoManProxy; }, "photomanager", "photoobj",
        "photointerface", 5000);
    row(
        "light", []() -> QDBusAbstractInterface* { return Scheduler::m_lightManProxy; }, "lightmanager", "lightobj",
        "lightinterface", -1);
    row(
        "processor frequency", []() -> QDBusAbstractInterface* { return Scheduler::m_cpuFreqManProxy; }, "freqmanager",
        "freqobj", "freqinterface", 2000);
    row(
        "GPS", []() -> QDBusAbstractInterface* { return Scheduler::m_gpsManProxy; }, "gpsmanager", "gpsobj",
        "gpsinterface", 5000);
    row(
        "network", []() -> QDBusAbstractInterface* { return Scheduler::m_networkManProxy; }, "networkmanager", "netobj",
        "networkinterface", -1);
}

void PeersTest::TheSharedProxiesAreAddressed()
{
    QFETCH(ProxyOf, proxyOf);
    QFETCH(QString, manager);
    QFETCH(QString, object);
    QFETCH(QString, interface);
    QFETCH(int, timeout_ms);
    const QDBusAbstractInterface* const proxy = proxyOf();
    QVERIFY(proxy != nullptr);
    QCOMPARE(proxy->service(), u"com.kestrelix.ozna."_s + manager);
    QCOMPARE(proxy->path(), u"/com/kestrelix/ozna/%1/%2"_s.arg(manager, object));
    QCOMPARE(proxy->interface(), u"com.kestrelix.ozna."_s + interface);
    QCOMPARE(proxy->timeout(), timeout_ms);
    QCOMPARE(proxy->parent(), nullptr);
    QCOMPARE(proxy->connection().name(), QDBusConnection::sessionBus().name());
}

void PeersTest::CreatingThemLogsNothing()
{
    Peers::DeleteProxies();
    QVERIFY(Scheduler::m_configManProxy == nullptr && Scheduler::m_updateManProxy == nullptr);
    QVERIFY(Scheduler::m_soundManProxy == nullptr && Scheduler::m_photoManProxy == nullptr);
    QVERIFY(Scheduler::m_lightManProxy == nullptr && Scheduler::m_cpuFreqManProxy == nullptr);
    QVERIFY(Scheduler::m_gpsManProxy == nullptr && Scheduler::m_networkManProxy == nullptr);
    const Scheduler scheduler(u"schedule.csv"_s);
    QVERIFY(Scheduler::m_soundManProxy != nullptr);
    EXPECT_LOG(9, {});
    EXPECT_REQUESTS(Bus(), {});
}

void PeersTest::ACallWithoutABusFailsAtOnce()
{
    PeerCall::SetTransport({});
    const PeerReply reply = PeerCall::Send(Scheduler::m_soundManProxy, u"PlayFile"_s, {u"gong.mp3"_s, u"08:30:00"_s});
    QVERIFY(reply.IsBusError());
    QVERIFY(!reply.IsAccepted());
    QVERIFY(!reply.ErrorMessage().isEmpty());
    EXPECT_REQUESTS(Bus(), {});
    EXPECT_LOG(9, {});
}

void PeersTest::ARecorderTakesTheBusesPlace()
{
    Bus().Answer("PlayFile", 7);
    Bus().AnswerBusError("StopPlay", u"gone"_s);
    QCOMPARE(PeerCall::Send(Scheduler::m_soundManProxy, u"PlayFile"_s, {u"gong.mp3"_s, 70.0, 1U, true}).Status(), 7);
    QCOMPARE(PeerCall::Send(nullptr, u"StopPlay"_s).ErrorMessage(), u"gone"_s);
    QVERIFY(PeerCall::Send(Scheduler::m_lightManProxy, u"Switch"_s, {QVariant::fromValue(uchar(3))}).IsAccepted());
    QCOMPARE(Bus().Requests()[0].timeout_ms, SOUND_TIMEOUT_MS);
    EXPECT_REQUESTS(Bus(), {u"sound.PlayFile sdub gong.mp3 70 1 true"_s, u".StopPlay -"_s, u"light.Switch y 3"_s});
}

OZNA_CASE(Peers, PeersTest)
#include "tst_Peers.moc"

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

using namespace Qt::StringLiterals;

class PeersTest final : public UnitTest
{
    Q_OBJECT
private Q_SLOTS:
    void TheSharedProxiesAreAddressed();
    void CreatingThemLogsNothing();
    void ACallWithoutABusFailsAtOnce();
    void ARecorderTakesTheBusesPlace();
};

void PeersTest::TheSharedProxiesAreAddressed()
{
    struct Address
    {
        const QDBusAbstractInterface* proxy;
        const char* service;
        const char* path;
        const char* interface;
        int timeout_ms; // -1: the bus library's own
    };
    for (const Address& address : {
             Address{Scheduler::m_configManProxy, "configmanager", "configobj", "configinterface", 2000},
             {Scheduler::m_updateManProxy, "updatemanager", "updateobj", "updateinterface", 2000},
             {Scheduler::m_soundManProxy, "soundmanager", "soundobj", "soundinterface", SOUND_TIMEOUT_MS},
             {Scheduler::m_photoManProxy, "photomanager", "photoobj", "photointerface", 5000},
             {Scheduler::m_lightManProxy, "lightmanager", "lightobj", "lightinterface", -1},
             {Scheduler::m_cpuFreqManProxy, "freqmanager", "freqobj", "freqinterface", 2000},
             {Scheduler::m_gpsManProxy, "gpsmanager", "gpsobj", "gpsinterface", 5000},
             {Scheduler::m_networkManProxy, "networkmanager", "netobj", "networkinterface", -1},
         })
    {
        QVERIFY2(address.proxy != nullptr, address.service);
        QCOMPARE(address.proxy->service(), u"com.kestrelix.ozna."_s + QLatin1StringView(address.service));
        QCOMPARE(address.proxy->path(), u"/com/kestrelix/ozna/%1/%2"_s.arg(QLatin1StringView(address.service),
                                                                           QLatin1StringView(address.path)));
        QCOMPARE(address.proxy->interface(), u"com.kestrelix.ozna."_s + QLatin1StringView(address.interface));
        QCOMPARE(address.proxy->timeout(), address.timeout_ms);
        QCOMPARE(address.proxy->parent(), nullptr);
        QCOMPARE(address.proxy->connection().name(), QDBusConnection::sessionBus().name());
    }
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

#include "PlayerTest.h"
#include "Suite.h"

using namespace Qt::StringLiterals;

// The auxiliary input.
class tst_PlayAux final : public PlayerTest
{
    Q_OBJECT
private Q_SLOTS:
    void PlaysTheDeviceOfTheSettings();
    void ADeviceThatCannotBeOpenedIsRefused();
    void ADeviceThatHangsIsRefused();
    void WhoAsksWhileItIsOpenedIsAnsweredLikeTheFirst_data();
    void WhoAsksWhileItIsOpenedIsAnsweredLikeTheFirst();
    void WithoutADeviceItIsNotSetUp();
};

void tst_PlayAux::PlaysTheDeviceOfTheSettings()
{
    Settings().aux = u"alsa:hw:1"_s;
    StartService();
    Sound().BeReady();
    QCOMPARE(Call("PlayAux"), 0);
    QCOMPARE(Call("PlayAux"), 0);
    QCOMPARE(Sound().Pieces().size(), 1);
    QCOMPARE(Shown(0), u"aux alsa:hw:1 100"_s);
    QCOMPARE(Call("StopPlay", {u"aux"_s, QString()}), 0);
    QCOMPARE(Sound().TakeCalls(), QStringList(u"stop 1"_s));
    QCOMPARE(Call("PlayAux"), 0);
    QCOMPARE(Sound().Pieces().size(), 2);
    QCOMPARE(Seen(0), QStringList());
}

void tst_PlayAux::ADeviceThatCannotBeOpenedIsRefused()
{
    Settings().aux = u"alsa:hw:1"_s;
    StartService();
    Ask("PlayAux");
    Q_EMIT Sound().Ended(1, u"no such device"_s);
    QCOMPARE(Seen(1), QStringList(u"PlayAux: 5"_s));
    EXPECT_LOG(LEVEL_WARNING,
               {{"1 [service/Requests.cpp] ENDED | aux: alsa:hw:1: no such device", SoundManager::PATH}});
}

void tst_PlayAux::ADeviceThatHangsIsRefused()
{
    Settings().aux = u"alsa:hw:1"_s;
    StartService();
    Ask("PlayAux");
    QCOMPARE(Seen(1), QStringList(u"PlayAux: 5"_s));
    QCOMPARE(Sound().TakeCalls(), QStringList(u"stop 1"_s));
    EXPECT_LOG(LEVEL_WARNING,
               {{"1 [service/Requests.cpp] ENDED | aux: alsa:hw:1: it was not ready in time", SoundManager::PATH}});
}

void tst_PlayAux::WhoAsksWhileItIsOpenedIsAnsweredLikeTheFirst_data()
{
    QTest::addColumn<QString>("reason");
    QTest::addColumn<QString>("answer");
    QTest::newRow("opened") << QString() << u"PlayAux: 0"_s;
    QTest::newRow("not opened") << u"no such device"_s << u"PlayAux: 5"_s;
}

void tst_PlayAux::WhoAsksWhileItIsOpenedIsAnsweredLikeTheFirst()
{
    QFETCH(const QString, reason);
    QFETCH(const QString, answer);
    Settings().aux = u"alsa:hw:1"_s;
    StartService();
    Ask("PlayAux");
    Ask("PlayAux");
    QCOMPARE(Seen(0), QStringList());
    if (reason.isEmpty())
        Q_EMIT Sound().Ready(1);
    else
        Q_EMIT Sound().Ended(1, reason);
    QCOMPARE(Seen(2), QStringList({answer, answer}));
    QCOMPARE(Sound().Pieces().size(), 1);
    EXPECT_LOG(LEVEL_WARNING, (reason.isEmpty() ? LogLines()
                                                : LogLines{{"1 [service/Requests.cpp] ENDED | aux: alsa:hw:1: no such "
                                                            "device",
                                                            SoundManager::PATH}}));
}

void tst_PlayAux::WithoutADeviceItIsNotSetUp()
{
    QCOMPARE(Call("PlayAux"), 4);
    EXPECT_LOG(LEVEL_WARNING, {{"1 [service/AuxPlayer.cpp] No auxiliary input is set up: [PLAYER] has no key Aux",
                                SoundManager::PATH}});
}

OZNA_CASE(PlayAux, tst_PlayAux)

#include "tst_PlayAux.moc"

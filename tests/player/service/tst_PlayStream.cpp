#include "PlayerTest.h"
#include "Suite.h"

using namespace Qt::StringLiterals;

// A stream: answered at once, told when it is heard, and ended once.
class tst_PlayStream final : public PlayerTest
{
    Q_OBJECT
private Q_SLOTS:
    void IsAnsweredAtOnceAndToldWhenItIsHeard();
    void AServerThatCannotBeReachedIsAnEnd();
    void TheEndOfTheEarlierOneComesAheadOfTheAnswer();
    void TheSameOneGoesOn();
    void TheSameOneThatConnectsGoesOn();
    void TheSameOneTakesTheVolumeOver();
    void AfterItsEndItBeginsAnew();
    void AStopEndsIt();
    void TheEndOfTheProcessEndsIt();
    void WhatIsNoAddressIsRefused_data();
    void WhatIsNoAddressIsRefused();

private:
    inline static const QVariantList LIVE{u"rtsp://10.0.0.5:8554/live"_s, 0U};
    inline static const QVariantList OTHER{u"http://10.0.0.5/other"_s, 0U};
};

void tst_PlayStream::IsAnsweredAtOnceAndToldWhenItIsHeard()
{
    QCOMPARE(Call("PlayStream", LIVE), 0);
    QCOMPARE(Shown(0), u"stream rtsp://10.0.0.5:8554/live 100"_s);
    QCOMPARE(Seen(0), QStringList());
    Q_EMIT Sound().Ready(1);
    Q_EMIT Sound().Started(1, Time().Utc_ms());
    QCOMPARE(Seen(1), QStringList(u"StreamEnabled(true)"_s));
    Q_EMIT Sound().Ended(1, {});
    QCOMPARE(Seen(1), QStringList(u"StreamEnabled(false)"_s));
    EXPECT_LOG(LEVEL_DETAIL,
               {{"4 [service/LivePiece.cpp] ASKED FOR | stream: rtsp://10.0.0.5:8554/live", SoundManager::PATH},
                {"4 [service/LivePiece.cpp] STARTED | stream: rtsp://10.0.0.5:8554/live", SoundManager::PATH},
                {"4 [service/LivePiece.cpp] ENDED | stream: rtsp://10.0.0.5:8554/live", SoundManager::PATH}});
}

void tst_PlayStream::AServerThatCannotBeReachedIsAnEnd()
{
    Ask("PlayStream", LIVE);
    Q_EMIT Sound().Ended(1, u"nobody answers"_s);
    QCOMPARE(Seen(2), QStringList({u"PlayStream: 0"_s, u"StreamEnabled(false)"_s}));
    EXPECT_LOG(LEVEL_WARNING, {{"1 [service/LivePiece.cpp] ENDED | stream: rtsp://10.0.0.5:8554/live: nobody answers",
                                SoundManager::PATH}});
}

void tst_PlayStream::TheEndOfTheEarlierOneComesAheadOfTheAnswer()
{
    Ask("PlayStream", LIVE);
    Q_EMIT Sound().Started(1, Time().Utc_ms());
    Ask("PlayStream", OTHER);
    QCOMPARE(Seen(4), QStringList({u"PlayStream: 0"_s, u"StreamEnabled(true)"_s, u"StreamEnabled(false)"_s,
                                   u"PlayStream: 0"_s}));
    QCOMPARE(Sound().TakeCalls(), QStringList(u"stop 1"_s));
    Q_EMIT Sound().Started(2, Time().Utc_ms());
    Q_EMIT Sound().Ended(2, {});
    QCOMPARE(Seen(2), QStringList({u"StreamEnabled(true)"_s, u"StreamEnabled(false)"_s}));
}

void tst_PlayStream::TheSameOneGoesOn()
{
    Ask("PlayStream", LIVE);
    Q_EMIT Sound().Started(1, Time().Utc_ms());
    QCOMPARE(Seen(2), QStringList({u"PlayStream: 0"_s, u"StreamEnabled(true)"_s}));
    Ask("PlayStream", LIVE);
    // What was asked for before has ended, whoever asks is told, and the sound has no gap.
    QCOMPARE(Seen(3), QStringList({u"StreamEnabled(false)"_s, u"PlayStream: 0"_s, u"StreamEnabled(true)"_s}));
    QCOMPARE(Sound().Pieces().size(), 1);
    QCOMPARE(Sound().TakeCalls(), QStringList());
    Q_EMIT Sound().Ended(1, {});
    QCOMPARE(Seen(1), QStringList(u"StreamEnabled(false)"_s));
    EXPECT_LOG(
        LEVEL_DETAIL,
        {{"4 [service/LivePiece.cpp] ASKED FOR | stream: rtsp://10.0.0.5:8554/live", SoundManager::PATH},
         {"4 [service/LivePiece.cpp] STARTED | stream: rtsp://10.0.0.5:8554/live", SoundManager::PATH},
         {"4 [service/StreamPlayer.cpp] ASKED FOR AGAIN | stream: rtsp://10.0.0.5:8554/live", SoundManager::PATH},
         {"4 [service/LivePiece.cpp] ENDED | stream: rtsp://10.0.0.5:8554/live", SoundManager::PATH}});
}

void tst_PlayStream::TheSameOneThatConnectsGoesOn()
{
    Ask("PlayStream", LIVE);
    Ask("PlayStream", LIVE);
    QCOMPARE(Seen(3), QStringList({u"PlayStream: 0"_s, u"StreamEnabled(false)"_s, u"PlayStream: 0"_s}));
    QCOMPARE(Sound().Pieces().size(), 1);
    QCOMPARE(Sound().TakeCalls(), QStringList());
    Q_EMIT Sound().Started(1, Time().Utc_ms());
    Q_EMIT Sound().Ended(1, {});
    QCOMPARE(Seen(2), QStringList({u"StreamEnabled(true)"_s, u"StreamEnabled(false)"_s}));
}

void tst_PlayStream::TheSameOneTakesTheVolumeOver()
{
    QCOMPARE(Call("PlayStream", LIVE), 0);
    QCOMPARE(Call("SetPlayerVolume", {u"stream"_s, 40.0}), 0);
    QCOMPARE(Call("PlayStream", LIVE), 0);
    QCOMPARE(Sound().TakeCalls(), QStringList(u"volume 1 40"_s));
    QCOMPARE(Call("PlayStream", LIVE), 0);
    QCOMPARE(Sound().TakeCalls(), QStringList());
    QCOMPARE(Seen(2), QStringList({u"StreamEnabled(false)"_s, u"StreamEnabled(false)"_s}));
}

void tst_PlayStream::AfterItsEndItBeginsAnew()
{
    QCOMPARE(Call("PlayStream", LIVE), 0);
    Q_EMIT Sound().Ended(1, {});
    QCOMPARE(Call("PlayStream", LIVE), 0);
    QCOMPARE(Call("StopPlay", {u"stream"_s, QString()}), 0);
    QCOMPARE(Call("PlayStream", LIVE), 0);
    QCOMPARE(Sound().Pieces().size(), 3);
    QCOMPARE(Seen(2), QStringList({u"StreamEnabled(false)"_s, u"StreamEnabled(false)"_s}));
}

void tst_PlayStream::AStopEndsIt()
{
    QCOMPARE(Call("PlayStream", LIVE), 0);
    QCOMPARE(Call("StopPlay", {u"stream"_s, QString()}), 0);
    QCOMPARE(Call("StopPlay", {u"stream"_s, QString()}), 0);
    QCOMPARE(Seen(1), QStringList(u"StreamEnabled(false)"_s));
    QCOMPARE(Sound().TakeCalls(), QStringList(u"stop 1"_s));
}

void tst_PlayStream::TheEndOfTheProcessEndsIt()
{
    QCOMPARE(Call("PlayStream", LIVE), 0);
    Service().End();
    QCOMPARE(Seen(1), QStringList(u"StreamEnabled(false)"_s));
}

void tst_PlayStream::WhatIsNoAddressIsRefused_data()
{
    QTest::addColumn<QString>("address");
    for (const char* address : {"", "live", "rtsp://", "rtsp:///live", "file:///etc/hostname", "ftp://10.0.0.5/live",
                                "rtsp://10.0.0.5:port/live", "/etc/hostname"})
        QTest::newRow(address) << QString::fromLatin1(address);
}

void tst_PlayStream::WhatIsNoAddressIsRefused()
{
    QFETCH(const QString, address);
    QCOMPARE(Call("PlayStream", LIVE), 0);
    QCOMPARE(Call("PlayStream", {address, 0U}), 1);
    // What plays goes on.
    QCOMPARE(Sound().TakeCalls(), QStringList());
    QCOMPARE(Sound().Pieces().size(), 1);
    EXPECT_LOG(LEVEL_WARNING,
               {{u"1 [service/StreamPlayer.cpp] \"%1\" is no address of a stream"_s.arg(address).toUtf8(),
                 SoundManager::PATH}});
}

OZNA_CASE(PlayStream, tst_PlayStream)

#include "tst_PlayStream.moc"

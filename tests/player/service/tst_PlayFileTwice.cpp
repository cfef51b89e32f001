#include "PlayerTest.h"
#include "Suite.h"

using namespace Qt::StringLiterals;

// A message that is asked for again: the daemon takes the end of any message for the end of all, and asks anew for what
// has not begun yet.
class tst_PlayFileTwice final : public PlayerTest
{
    Q_OBJECT
private Q_SLOTS:
    void WhileItWaitsItIsOneRequest();
    void WhileItIsNotAnsweredItIsOneRequest();
    void ASecondAfterItBeganItIsOneRequest();
    void ItsVolumeIsTakenOver();
    void AnotherTimeIsAnotherRequest();
    void AnotherFileIsAnotherRequest();
    void AtOnceIsAnotherRequestEachTime();
    void AfterItsEndItIsAnotherRequest();
    void TheNextOneTakesOver();

private:
    // The request that is made twice; its status.
    int PlayGong() { return Call("PlayFile", {u"gong.wav"_s, u"12:00:05"_s}); }
};

void tst_PlayFileTwice::WhileItWaitsItIsOneRequest()
{
    Write(u"media/gong.wav"_s);
    Sound().BeReady();
    QCOMPARE(PlayGong(), 0);
    QCOMPARE(PlayGong(), 0);
    QCOMPARE(Sound().Pieces().size(), 1);
    Q_EMIT Sound().Ended(1, {});
    QCOMPARE(Seen(1), QStringList(u"PlayFileCompleted(gong.wav)"_s));
}

void tst_PlayFileTwice::WhileItIsNotAnsweredItIsOneRequest()
{
    Write(u"media/gong.wav"_s);
    Ask("PlayFile", {u"gong.wav"_s, u"12:00:05"_s});
    Ask("PlayFile", {u"gong.wav"_s, u"12:00:05"_s});
    QCOMPARE(Seen(0), QStringList());
    Q_EMIT Sound().Ready(1);
    QCOMPARE(Seen(2), QStringList({u"PlayFile: 0"_s, u"PlayFile: 0"_s}));
    QCOMPARE(Sound().Pieces().size(), 1);
    Q_EMIT Sound().Ended(1, {});
    QCOMPARE(Seen(1), QStringList(u"PlayFileCompleted(gong.wav)"_s));
}

void tst_PlayFileTwice::ASecondAfterItBeganItIsOneRequest()
{
    Write(u"media/gong.wav"_s);
    Sound().BeReady();
    QCOMPARE(PlayGong(), 0);
    Time().Advance_s(6);
    Q_EMIT Sound().Started(1, Time().Utc_ms() - 1000);
    QCOMPARE(PlayGong(), 0);
    QCOMPARE(Sound().Pieces().size(), 1);
}

void tst_PlayFileTwice::ItsVolumeIsTakenOver()
{
    Write(u"media/gong.wav"_s);
    Sound().BeReady();
    QCOMPARE(PlayGong(), 0);
    QCOMPARE(Call("SetPlayerVolume", {u"file"_s, 40.0}), 0);
    QCOMPARE(PlayGong(), 0);
    QCOMPARE(Sound().TakeCalls(), QStringList(u"volume 1 40"_s));
}

void tst_PlayFileTwice::AnotherTimeIsAnotherRequest()
{
    Write(u"media/gong.wav"_s);
    Sound().BeReady();
    QCOMPARE(PlayGong(), 0);
    QCOMPARE(Call("PlayFile", {u"gong.wav"_s, u"12:00:06"_s}), 0);
    QCOMPARE(Sound().Pieces().size(), 2);
    Q_EMIT Sound().Ended(1, {});
    Q_EMIT Sound().Ended(2, {});
    QCOMPARE(Seen(2), QStringList({u"PlayFileCompleted(gong.wav)"_s, u"PlayFileCompleted(gong.wav)"_s}));
}

void tst_PlayFileTwice::AnotherFileIsAnotherRequest()
{
    Write(u"media/gong.wav"_s);
    Write(u"media/bye.wav"_s);
    Sound().BeReady();
    QCOMPARE(PlayGong(), 0);
    QCOMPARE(Call("PlayFile", {u"bye.wav"_s, u"12:00:05"_s}), 0);
    QCOMPARE(Sound().Pieces().size(), 2);
}

void tst_PlayFileTwice::AtOnceIsAnotherRequestEachTime()
{
    Write(u"media/gong.wav"_s);
    Sound().BeReady();
    QCOMPARE(Call("PlayFile", {u"gong.wav"_s, QString()}), 0);
    QCOMPARE(Call("PlayFile", {u"gong.wav"_s, QString()}), 0);
    QCOMPARE(Sound().Pieces().size(), 2);
}

void tst_PlayFileTwice::AfterItsEndItIsAnotherRequest()
{
    Write(u"media/gong.wav"_s);
    Sound().BeReady();
    QCOMPARE(PlayGong(), 0);
    Q_EMIT Sound().Ended(1, {});
    QCOMPARE(PlayGong(), 0);
    QCOMPARE(Sound().Pieces().size(), 2);
    QCOMPARE(Seen(1), QStringList(u"PlayFileCompleted(gong.wav)"_s));
}

void tst_PlayFileTwice::TheNextOneTakesOver()
{
    Write(u"media/gong.wav"_s);
    Write(u"media/bye.wav"_s);
    Sound().BeReady();
    QCOMPARE(Call("PlayFile", {u"gong.wav"_s, QString()}), 0);
    QCOMPARE(Call("PlayFile", {u"bye.wav"_s, u"12:00:05"_s}), 0);
    QCOMPARE(Sound().TakeCalls(), QStringList());
    // The sound maker lets go of the first when the second begins.
    Q_EMIT Sound().Started(2, Time().Utc_ms() + 5000);
    Q_EMIT Sound().Ended(1, {});
    QCOMPARE(Seen(1), QStringList(u"PlayFileCompleted(gong.wav)"_s));
    Q_EMIT Sound().Ended(2, {});
    QCOMPARE(Seen(1), QStringList(u"PlayFileCompleted(bye.wav)"_s));
}

OZNA_CASE(PlayFileTwice, tst_PlayFileTwice)

#include "tst_PlayFileTwice.moc"

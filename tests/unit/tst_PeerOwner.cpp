#include "Rows.h"
#include "Scheduler.h"
#include "Suite.h"
#include "UnitTest.h"
#include "peers/PeerOwner.h"
#include "tasks/Photo.h"
#include "tasks/PlayPlaylist.h"

#include <LightManagerProxy.h>
#include <PhotoManagerProxy.h>
#include <SoundManagerProxy.h>

#include <QSignalSpy>

using namespace Qt::StringLiterals;

// Who owns a manager's name, told by hand.
class PeerOwnerTest final : public UnitTest
{
    Q_OBJECT
private Q_SLOTS:
    void ItBelongsToItsProxy();
    void OnlyWhoLeavesIsTold_data();
    void OnlyWhoLeavesIsTold();
    void APlaylistCountsAsCompletedOnce();
    void AFailureWithoutAnOwnerLeavesNothingUnderWay_data();
    void AFailureWithoutAnOwnerLeavesNothingUnderWay();
    void ASeriesThatEndedWithItsPeerStopsNoOther();

private:
    void Begin() override { Data().WritePlaylist("track1.mp3;60\ntrack2.mp3;30\n", u"xmas"_s); }
};

void PeerOwnerTest::ItBelongsToItsProxy()
{
    QVERIFY(PeerOwner::Of(nullptr) == nullptr);
    // Nobody leaves a bus that is not there.
    QVERIFY(PeerOwner::Of(Scheduler::m_soundManProxy) == nullptr);
    QVERIFY(PeerOwner::Of(Scheduler::m_photoManProxy) == nullptr);
    const PeerOwner owner(Scheduler::m_photoManProxy);
    QCOMPARE(PeerOwner::Of(Scheduler::m_photoManProxy), &owner);
    QVERIFY(PeerOwner::Of(Scheduler::m_soundManProxy) == nullptr);
    QCOMPARE(owner.Name(), QString());
}

void PeerOwnerTest::OnlyWhoLeavesIsTold_data()
{
    Rows<QString, QString, int>::Add({
        {"the first", u""_s, u":1.5"_s, 0},
        {"a successor", u":1.5"_s, u":1.7"_s, 1},
        {"nobody any more", u":1.5"_s, u""_s, 1},
        {"the same", u":1.5"_s, u":1.5"_s, 0},
    });
}

void PeerOwnerTest::OnlyWhoLeavesIsTold()
{
    const auto& [earlier, name, told] = Rows<QString, QString, int>::Current();
    PeerOwner owner(Scheduler::m_photoManProxy);
    const QSignalSpy left(&owner, &PeerOwner::Left);
    owner.Change(earlier, name);
    QCOMPARE(owner.Name(), name);
    QCOMPARE(left.size(), told);
    if (told > 0)
        QCOMPARE(left[0][0].toString(), earlier);
}

void PeerOwnerTest::APlaylistCountsAsCompletedOnce()
{
    PeerOwner owner(Scheduler::m_soundManProxy);
    owner.Change({}, u":1.5"_s);
    PlayPlaylist task(u"08:30:00"_s, u"xmas"_s, u"-1"_s, {});
    QVERIFY(task.Run());
    LogRecorder::Clear();
    owner.Change(u":1.4"_s, u":1.5"_s);
    QVERIFY(task.IsRunning());
    QVERIFY(!task.IsCompleted());
    EXPECT_LOG(9, {});
    owner.Change(u":1.5"_s, {});
    EXPECT_LOG(9, {"2 [Task.cpp] TASK ENDED WITH ITS PEER | PlayPlaylist: xmas"});
    QVERIFY(!task.IsRunning());
    QVERIFY(task.m_running);
    QVERIFY(task.IsCompleted());
    owner.Change({}, u":1.5"_s);
    owner.Change(u":1.5"_s, {});
    EXPECT_LOG(9, {});
    // An end that is told all the same ends the rest.
    Q_EMIT Scheduler::m_soundManProxy->PlayPlaylistCompleted({});
    EXPECT_LOG(9, {"4 [tasks/PlayPlaylist.cpp] TASK COMPLETED | PlayPlaylist: xmas"});
    QVERIFY(!task.m_running);
}

void PeerOwnerTest::AFailureWithoutAnOwnerLeavesNothingUnderWay_data()
{
    Rows<QString, bool>::Add({
        {"no owner", u""_s, false},
        {"an owner", u":1.5"_s, true},
    });
}

void PeerOwnerTest::AFailureWithoutAnOwnerLeavesNothingUnderWay()
{
    const auto& [owner, isRunning] = Rows<QString, bool>::Current();
    PeerOwner photo(Scheduler::m_photoManProxy);
    photo.Change({}, owner);
    Bus().AnswerBusError("TakePhoto", u"gone"_s);
    Photo task({});
    QVERIFY(!task.Run());
    LogRecorder::Clear();
    QCOMPARE(task.IsRunning(), isRunning);
    QVERIFY(task.m_running);
}

void PeerOwnerTest::ASeriesThatEndedWithItsPeerStopsNoOther()
{
    PeerOwner owner(Scheduler::m_photoManProxy);
    owner.Change({}, u":1.5"_s);
    Photo task(u"10,2"_s);
    QVERIFY(task.Run());
    owner.Change(u":1.5"_s, u":1.6"_s);
    LogRecorder::Clear();
    Bus().Clear();
    // Of a series that another line has asked the new peer for.
    for (int i = 0; i < 3; ++i)
        Q_EMIT Scheduler::m_photoManProxy->PhotoTaken(0, {});
    EXPECT_REQUESTS(Bus(), {});
    EXPECT_LOG(4, {});
}

OZNA_CASE(PeerOwner, PeerOwnerTest)
#include "tst_PeerOwner.moc"

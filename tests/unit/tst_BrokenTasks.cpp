#include "Action.h"
#include "ActionLine.h"
#include "BrokenFunctions.h"
#include "PlaylistLines.h"
#include "Scheduler.h"
#include "Suite.h"
#include "UnitTest.h"
#include "peers/PeerOwner.h"
#include "tasks/Photo.h"
#include "tasks/PlayPlaylist.h"

#include <SoundManagerProxy.h>

using namespace Qt::StringLiterals;

// Tasks whose functions fail.
class BrokenTasksTest final : public UnitTest
{
    Q_OBJECT
private Q_SLOTS:
    void APhotoWithoutMemoryTakesItsDefaults();
    void APhotoThatCannotSeePhotosIsTold();
    void AllPhotosShareOneConnection();
    void APddRequestThatCannotBeHeardIsRejected();
    void APlaybackWhoseEndCannotBeHeardIsTold();
    void APlaybackWhosePeerCannotBeFollowedIsTold();
    void APeersOwnerThatCannotBeHeardIsNone();
    void APlaylistWithAReadErrorKeepsItsTracks();

private:
    void Begin() override { Data().WritePlaylist("track1.mp3;60\ntrack2.mp3;30\n", u"xmas"_s); }
    void End() override { BrokenFunctions::Mend(); }
};

void BrokenTasksTest::APhotoWithoutMemoryTakesItsDefaults()
{
    for (const QString& parameter : {u"10,3"_s, u"x"_s})
    {
        BrokenFunctions::cannotSplit = true;
        Photo task(parameter);
        EXPECT_LOG(9, {"2 [tasks/Photo.cpp] Error parsing parameters: using defaults (interval=0 s, numPhoto=1)",
                       "4 [tasks/Photo.cpp] TASK CREATED | Photo: interval=0 s, numPhoto=1"});
        QVERIFY(task.Run());
        EXPECT_REQUESTS(Bus(), {u"photo.TakePhoto -"_s});
        LogRecorder::Clear();
    }
}

void BrokenTasksTest::APhotoThatCannotSeePhotosIsTold()
{
    BrokenFunctions::cannotConnect = true;
    const Photo task(u"10,3"_s);
    EXPECT_LOG(9, {"2 [tasks/Photo.cpp] Can't wait for the photos of RecordPhoto",
                   "4 [tasks/Photo.cpp] TASK CREATED | Photo: interval=10 s, numPhoto=3"});
}

void BrokenTasksTest::AllPhotosShareOneConnection()
{
    {
        const Photo first(QString{});
        BrokenFunctions::cannotConnect = true;
        const Photo second(QString{});
        EXPECT_LOG(2, {});
    }
    const Photo alone(QString{});
    EXPECT_LOG(2, {"2 [tasks/Photo.cpp] Can't wait for the photos of RecordPhoto"});
}

void BrokenTasksTest::APddRequestThatCannotBeHeardIsRejected()
{
    BrokenFunctions::cannotConnect = true;
    QVERIFY_THROWS_EXCEPTION(std::exception, Action(ActionLine{.task = u"19|1,1"_s}.Text()));
    EXPECT_LOG(4, {"4 [tasks/RequestPddAction.cpp] TASK CREATED | RequestPddAction(STREAM_MIC, 1)",
                   "1 [Action.cpp] RequestPddAction task creation failed"});
    // The other kinds need no connection to their action.
    const Action other(ActionLine{}.Text());
    EXPECT_LOG(4, {"4 [tasks/StopMessage.cpp] TASK CREATED | StopMessage"});
}

void BrokenTasksTest::APlaybackWhoseEndCannotBeHeardIsTold()
{
    PlayPlaylist task(u"08:30:00"_s, u"xmas"_s, u"-1"_s, {});
    BrokenFunctions::cannotConnect = true;
    LogRecorder::Clear();
    // It plays all the same, and is stopped with its task.
    QVERIFY(task.Run());
    QVERIFY(task.IsRunning());
    QCOMPARE(LogRecorder::Messages(2), QStringList{u"Can't wait for the end of PlayPlaylist"_s});
    LogRecorder::Clear();
}

void BrokenTasksTest::APlaybackWhosePeerCannotBeFollowedIsTold()
{
    const PeerOwner owner(Scheduler::m_soundManProxy);
    PlayPlaylist task(u"08:30:00"_s, u"xmas"_s, u"-1"_s, {});
    BrokenFunctions::cannotConnect = true;
    LogRecorder::Clear();
    QVERIFY(task.Run());
    QVERIFY(task.IsRunning());
    QCOMPARE(LogRecorder::Messages(2), (QStringList{u"Can't wait for the peer of PlayPlaylist to leave"_s,
                                                    u"Can't wait for the end of PlayPlaylist"_s}));
    LogRecorder::Clear();
}

void BrokenTasksTest::APeersOwnerThatCannotBeHeardIsNone()
{
    BrokenFunctions::cannotConnect = true;
    QVERIFY_THROWS_EXCEPTION(std::exception, static_cast<void>(PeerOwner{Scheduler::m_soundManProxy}));
    QVERIFY(PeerOwner::Of(Scheduler::m_soundManProxy) == nullptr);
}

void BrokenTasksTest::APlaylistWithAReadErrorKeepsItsTracks()
{
    BrokenFunctions::hasReadError = true;
    const PlayPlaylist task(u"08:30:00"_s, u"xmas"_s, u"-1"_s, {});
    EXPECT_LOG(4,
               {{"2 [tasks/PlayPlaylist.cpp] Playlist file read error: Input/output error", PlaylistLines::FILE_ORIGIN},
                PlaylistLines::Loaded(2),
                PlaylistLines::Created("xmas at 08:30:00 (92 s, vol=-1)")});
}

OZNA_CASE(BrokenTasks, BrokenTasksTest)
#include "tst_BrokenTasks.moc"

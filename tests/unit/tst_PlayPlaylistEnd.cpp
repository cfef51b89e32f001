#include "Rows.h"
#include "Scheduler.h"
#include "Suite.h"
#include "UnitTest.h"
#include "tasks/PlayPlaylist.h"

#include <SoundManagerProxy.h>

#include <QSignalSpy>

#include <optional>

using namespace Qt::StringLiterals;

// The end of a playlist, and of its task.
class PlayPlaylistEndTest final : public UnitTest
{
    Q_OBJECT
private Q_SLOTS:
    void AnyPlaylistsEndIsTheTasks_data();
    void AnyPlaylistsEndIsTheTasks();
    void OneEndIsThatOfEveryRunningTask();
    void WithoutAPlaybackNoEndIsHeard();
    void APlaylistIsPlayedAgainOnAnotherDay();
    void ATaskThatIsGoneHearsNothing();
    void AnotherPlaylistIsLeftAlone_data();
    void AnotherPlaylistIsLeftAlone();

private:
    void Begin() override;
    void End() override { m_task.reset(); }

    // Makes the task, and forgets what that logs.
    PlayPlaylist& Make();

    std::optional<PlayPlaylist> m_task;
};

void PlayPlaylistEndTest::Begin()
{
    Data().WritePlaylist("track1.mp3;60\ntrack2.mp3;30\n", u"xmas"_s);
}

PlayPlaylist& PlayPlaylistEndTest::Make()
{
    m_task.emplace(u"08:30:00"_s, u"xmas"_s, u"-1"_s, u"id"_s);
    LogRecorder::Clear();
    return *m_task;
}

void PlayPlaylistEndTest::AnyPlaylistsEndIsTheTasks_data()
{
    QTest::addColumn<QString>("ended");
    for (const QString& name : {u"xmas"_s, u"easter"_s, u""_s})
        QTest::addRow("\"%s\"", qPrintable(name)) << name;
}

void PlayPlaylistEndTest::AnyPlaylistsEndIsTheTasks()
{
    QFETCH(QString, ended);
    PlayPlaylist& task = Make();
    const QSignalSpy completed(&task, &PlayPlaylist::TaskCompleted);
    QVERIFY(task.Run());
    LogRecorder::Clear();
    Q_EMIT Scheduler::m_soundManProxy->PlayPlaylistCompleted(ended);
    EXPECT_LOG(9, {"4 [tasks/PlayPlaylist.cpp] TASK COMPLETED | PlayPlaylist: xmas"});
    QCOMPARE(completed.size(), 1);
    QVERIFY(!task.IsRunning());
    QVERIFY(task.IsCompleted());
    // A further one is somebody else's.
    Q_EMIT Scheduler::m_soundManProxy->PlayPlaylistCompleted(ended);
    EXPECT_LOG(9, {});
    QCOMPARE(completed.size(), 1);
}

void PlayPlaylistEndTest::OneEndIsThatOfEveryRunningTask()
{
    PlayPlaylist& first = Make();
    PlayPlaylist second(u"08:40:00"_s, u"xmas"_s, u"-1"_s, u"other"_s);
    PlayPlaylist idle(u"08:50:00"_s, u"xmas"_s, u"-1"_s, u"idle"_s);
    QVERIFY(first.Run());
    QVERIFY(second.Run());
    LogRecorder::Clear();
    Q_EMIT Scheduler::m_soundManProxy->PlayPlaylistCompleted(u"xmas"_s);
    EXPECT_LOG(9, {"4 [tasks/PlayPlaylist.cpp] TASK COMPLETED | PlayPlaylist: xmas",
                   "4 [tasks/PlayPlaylist.cpp] TASK COMPLETED | PlayPlaylist: xmas"});
    QVERIFY(!first.IsRunning());
    QVERIFY(!second.IsRunning());
    QVERIFY(!idle.IsCompleted());
}

void PlayPlaylistEndTest::WithoutAPlaybackNoEndIsHeard()
{
    PlayPlaylist& task = Make();
    const QSignalSpy completed(&task, &PlayPlaylist::TaskCompleted);
    Q_EMIT Scheduler::m_soundManProxy->PlayPlaylistCompleted(u"xmas"_s);
    Bus().Answer("PlayPlaylist", 5);
    QVERIFY(!task.Run());
    LogRecorder::Clear();
    Q_EMIT Scheduler::m_soundManProxy->PlayPlaylistCompleted(u"xmas"_s);
    EXPECT_LOG(9, {});
    QCOMPARE(completed.size(), 0);
    // Nor that of other sources, while it plays.
    Bus().Answer("PlayPlaylist", 0);
    QVERIFY(task.Run());
    Q_EMIT Scheduler::m_soundManProxy->PlayFileCompleted(u"xmas"_s);
    Q_EMIT Scheduler::m_soundManProxy->StreamEnabled(false);
    QVERIFY(task.IsRunning());
    QCOMPARE(completed.size(), 0);
}

void PlayPlaylistEndTest::APlaylistIsPlayedAgainOnAnotherDay()
{
    PlayPlaylist& task = Make();
    const QSignalSpy completed(&task, &PlayPlaylist::TaskCompleted);
    for (int day = 1; day <= 3; ++day)
    {
        Bus().Clear();
        QVERIFY(task.Run());
        QVERIFY(task.IsRunning());
        QVERIFY(!task.IsCompleted());
        EXPECT_REQUESTS(Bus(), {u"sound.PlayPlaylist ssusb xmas id 1 08:30:00 false"_s});
        Q_EMIT Scheduler::m_soundManProxy->PlayPlaylistCompleted(u"xmas"_s);
        QCOMPARE(completed.size(), day);
        QVERIFY(!task.IsRunning());
    }
}

void PlayPlaylistEndTest::ATaskThatIsGoneHearsNothing()
{
    QVERIFY(Make().Run());
    m_task.reset();
    LogRecorder::Clear();
    Q_EMIT Scheduler::m_soundManProxy->PlayPlaylistCompleted(u"xmas"_s);
    EXPECT_LOG(9, {});
}

void PlayPlaylistEndTest::AnotherPlaylistIsLeftAlone_data()
{
    Rows<bool, int>::Add({
        {"never run", false, 0},
        {"refused", true, 5},
        {"played to its end", true, 0},
    });
}

void PlayPlaylistEndTest::AnotherPlaylistIsLeftAlone()
{
    const auto& [run, status] = Rows<bool, int>::Current();
    PlayPlaylist& task = Make();
    Bus().Answer("PlayPlaylist", status);
    if (run)
        QCOMPARE(task.Run(), status == 0);
    Q_EMIT Scheduler::m_soundManProxy->PlayPlaylistCompleted(u"xmas"_s);
    LogRecorder::Clear();
    Bus().Clear();
    m_task.reset();
    EXPECT_REQUESTS(Bus(), {});
    EXPECT_LOG(9, {});
}

OZNA_CASE(PlayPlaylistEnd, PlayPlaylistEndTest)
#include "tst_PlayPlaylistEnd.moc"

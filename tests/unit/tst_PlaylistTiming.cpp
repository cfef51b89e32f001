#include "Action.h"
#include "ActionLine.h"
#include "MissedLines.h"
#include "Rows.h"
#include "SchedulerAccess.h"
#include "SchedulerTest.h"
#include "Suite.h"
#include "tasks/PlayPlaylist.h"

#include <SoundManagerProxy.h>

#include <limits>

using namespace Qt::StringLiterals;

namespace
{

constexpr unsigned int GREATEST_DELAY_S = std::numeric_limits<int>::max();

QByteArray NotDelayed()
{
    return "5 [tasks/PlayPlaylist.cpp] PlayPlaylist NOT delayed: will start from track 1"_ba;
}

} // namespace

// Joining a playlist late: which track is first, until when, and when not at all.
class PlaylistTimingTest final : public SchedulerTest
{
    Q_OBJECT
private Q_SLOTS:
    void ADelayChoosesTheFirstTrack_data();
    void ADelayChoosesTheFirstTrack();
    void EachDelayCountsFromTheFirstTrack_data();
    void EachDelayCountsFromTheFirstTrack();
    void ALatePlaylistIsJoined();
    void ACompletedPlaylistIsNotJoined_data();
    void ACompletedPlaylistIsNotJoined();
    void ACompletedPlaylistComesBackTheNextDay();
    void ARefusedPlaylistIsAskedForUntilItsTime();
    void APlaylistThatIsStoppedAtOnceIsSkipped();

private:
    // An action that plays "xmas" at noon every day; the playlist's last track starts 300 s later.
    std::unique_ptr<Action> PlayAtNoon();
};

std::unique_ptr<Action> PlaylistTimingTest::PlayAtNoon()
{
    Data().WritePlaylist("track1.mp3;298\ntrack2.mp3;20\n", u"xmas"_s);
    const ActionLine line{.start = u"12:00:00"_s, .task = u"PlayPlaylist|xmas,-1,id"_s};
    auto action = std::make_unique<Action>(line.Text());
    LogRecorder::Clear();
    return action;
}

void PlaylistTimingTest::ADelayChoosesTheFirstTrack_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<unsigned int>("delay_s");
    QTest::addColumn<int>("first"); // 0: refused
    QTest::addColumn<int>("total_s");
    const auto rows = [](const char* name, const QByteArray& content, int total_s) {
        return [=](unsigned int delay_s, int first) {
            QTest::addRow("%s, %u s late", name, delay_s) << content << delay_s << first << total_s;
        };
    };
    const auto two = rows("two tracks", "track1.mp3;60\ntrack2.mp3;30\n", 92);
    two(0, 1);
    two(1, 2);
    two(10, 2);
    two(59, 2);
    two(61, 2);
    two(62, 3); // the second track begins: past the list's end
    two(70, 3);
    two(91, 3);
    two(92, 0);
    two(93, 0);
    two(86400, 0);
    two(GREATEST_DELAY_S, 0);
    // As a signed number it is no delay.
    two(GREATEST_DELAY_S + 1U, 1);
    two(0xFFFFFFFFU, 1);
    const auto one = rows("one track", "track1.mp3;300\n", 300);
    one(1, 2);
    one(299, 2);
    one(300, 0);
    const auto three = rows("three tracks", "track1.mp3;60\ntrack2.mp3;30\ntrack3.mp3;100\n", 194);
    three(61, 2);
    three(62, 3);
    three(93, 3);
    three(94, 4);
    three(193, 4);
    three(194, 0);
    const auto zero = rows("tracks of 0 s", "track1.mp3;000\ntrack2.mp3;000\ntrack3.mp3;000\n", 4);
    zero(1, 2);
    zero(2, 3);
    zero(3, 3);
    zero(4, 0);
    const auto negative = rows("a negative track", "track1.mp3;-5\ntrack2.mp3;30\n", 27);
    negative(10, 3);
    negative(26, 3);
    negative(27, 0);
    // The total is negative, and as an unsigned number greater than any delay.
    const auto most = rows("a negative total", "track1.mp3;-100\ntrack2.mp3;30\n", -68);
    most(10, 3);
    most(GREATEST_DELAY_S, 3);
    const auto longest = rows("the longest track", "track1.mp3;2147483647\ntrack2.mp3;30\n", -2147483617);
    longest(GREATEST_DELAY_S, 2);
}

void PlaylistTimingTest::ADelayChoosesTheFirstTrack()
{
    QFETCH(QByteArray, content);
    QFETCH(unsigned int, delay_s);
    QFETCH(int, first);
    QFETCH(int, total_s);
    Data().WritePlaylist(content, u"xmas"_s);
    PlayPlaylist task(u"12:00:00"_s, u"xmas"_s, u"-1"_s, u"id"_s);
    LogRecorder::Clear();
    task.PrepareDelayed(delay_s);
    if (static_cast<int>(delay_s) <= 0)
        EXPECT_LOG(9, {NotDelayed()});
    else if (first == 0)
        EXPECT_LOG(9, {"2 [tasks/PlayPlaylist.cpp] PlayPlaylist can't be prepared as delayed: delay (" +
                       QByteArray::number(delay_s) + " s) >= duration (" + QByteArray::number(total_s) + " s))"});
    else
        EXPECT_LOG(9, {"5 [tasks/PlayPlaylist.cpp] PlayPlaylist prepared as delayed (12:00:00, file " +
                       QByteArray::number(first) + ")"});
    EXPECT_REQUESTS(Bus(), {});
    // A refused delay leaves the first track first.
    const int sent = first == 0 ? 1 : first;
    QVERIFY(task.Run());
    EXPECT_REQUESTS(Bus(), {u"sound.PlayPlaylist ssusb xmas id %1 12:00:00 false"_s.arg(sent)});
    EXPECT_LOG(4, {"4 [tasks/PlayPlaylist.cpp] Requesting PlayPlaylist...",
                   "4 [tasks/PlayPlaylist.cpp] TASK START@TIME REQUESTED | PlayPlaylist: xmas|" +
                       QByteArray::number(sent) + "|12:00:00|-1"});
}

void PlaylistTimingTest::EachDelayCountsFromTheFirstTrack_data()
{
    Rows<QList<unsigned int>, int>::Add({
        {"the same delay twice", {70, 70}, 3},
        {"a shorter delay", {70, 10}, 2},
        {"a longer delay", {10, 70}, 3},
        {"no delay any more", {70, 0}, 1},
        {"a delay that is refused changes nothing", {70, 92}, 3},
        {"a delay after one that was refused", {92, 10}, 2},
        {"many delays", {10, 10, 10, 10, 10}, 2},
    });
}

void PlaylistTimingTest::EachDelayCountsFromTheFirstTrack()
{
    const auto& [delays_s, first] = Rows<QList<unsigned int>, int>::Current();
    Data().WritePlaylist("track1.mp3;60\ntrack2.mp3;30\n", u"xmas"_s);
    PlayPlaylist task(u"12:00:00"_s, u"xmas"_s, u"-1"_s, u"id"_s);
    for (const unsigned int delay_s : delays_s)
        task.PrepareDelayed(delay_s);
    LogRecorder::Clear();
    QVERIFY(task.Run());
    EXPECT_REQUESTS(Bus(), {u"sound.PlayPlaylist ssusb xmas id %1 12:00:00 false"_s.arg(first)});
}

void PlaylistTimingTest::ALatePlaylistIsJoined()
{
    const std::unique_ptr<Action> action = PlayAtNoon();
    Time().SetLocal(QTime(12, 1));
    QVERIFY(action->IsEarly());
    EXPECT_LOG(9, {});
    QVERIFY(action->IsReady());
    EXPECT_LOG(9, {"2 [Action.cpp] Task PlayPlaylist IsDelayed but still valid (accumulated delay: 60 s, tolerated "
                   "delay: 300 s)"});
    action->Start();
    EXPECT_LOG(9, {"5 [Action.cpp] Action 'PlayPlaylist' delay: 60 s (0=no-delay)",
                   "5 [tasks/PlayPlaylist.cpp] PlayPlaylist prepared as delayed (12:00:00, file 2)",
                   "9 [Action.cpp] Task PlayPlaylist is starting !",
                   "4 [tasks/PlayPlaylist.cpp] Requesting PlayPlaylist...",
                   "4 [tasks/PlayPlaylist.cpp] TASK START@TIME REQUESTED | PlayPlaylist: xmas|2|12:00:00|-1"});
    // While it plays it is not looked at.
    QVERIFY(!action->IsEarly());
    Time().SetLocal(QTime(12, 5));
    QVERIFY(!action->IsEarly());
}

void PlaylistTimingTest::ACompletedPlaylistIsNotJoined_data()
{
    // before it has been played
    // afterwards
    // early: before it has been played
    // earlyCompleted: afterwards
    Rows<QTime, bool, bool>::Add({
        {"13 s ahead", QTime(11, 59, 47), false, false},
        {"12 s ahead", QTime(11, 59, 48), true, true},
        {"1 s ahead", QTime(11, 59, 59), true, true},
        {"on the second", QTime(12, 0), true, false},
        {"a second late", QTime(12, 0, 1), true, false},
        {"when the last track starts", QTime(12, 5), true, false},
        {"a second later", QTime(12, 5, 1), false, false},
    });
}

void PlaylistTimingTest::ACompletedPlaylistIsNotJoined()
{
    const auto& [now, early, earlyCompleted] = Rows<QTime, bool, bool>::Current();
    const std::unique_ptr<Action> action = PlayAtNoon();
    Time().SetLocal(now);
    QCOMPARE(action->IsEarly(), early);
    action->m_task->SetCompleted(true);
    QCOMPARE(action->IsEarly(), earlyCompleted);
    action->m_task->SetCompleted(false);
    QCOMPARE(action->IsEarly(), early);
}

void PlaylistTimingTest::ACompletedPlaylistComesBackTheNextDay()
{
    const std::unique_ptr<Action> action = PlayAtNoon();
    for (int day = 15; day <= 17; ++day)
    {
        Time().SetLocal(QDate(2024, 5, day), QTime(11, 59, 50));
        QVERIFY(action->IsEarly());
        Time().SetLocal(QTime(11, 59, 52));
        QVERIFY(action->IsReady());
        action->Start();
        QVERIFY(!action->IsEarly());
        Time().SetLocal(QTime(12, 1));
        Q_EMIT Scheduler::m_soundManProxy->PlayPlaylistCompleted(u"xmas"_s);
        // It could be joined still, had it not been played to its end.
        QVERIFY(!action->IsEarly());
    }
    QCOMPARE(Bus().Requests().size(), 3);
}

void PlaylistTimingTest::ARefusedPlaylistIsAskedForUntilItsTime()
{
    Bus().Answer("PlayPlaylist", 5);
    const std::unique_ptr<Action> action = PlayAtNoon();
    for (const QTime& now : {QTime(11, 59, 52), QTime(11, 59, 55), QTime(11, 59, 58)})
    {
        Time().SetLocal(now);
        QVERIFY(action->IsEarly());
        QVERIFY(action->IsReady());
        action->Start();
        EXPECT_LOG(2, {"1 [tasks/PlayPlaylist.cpp] PlayPlaylist error: 5"});
    }
    for (const QTime& now : {QTime(12, 0), QTime(12, 0, 1), QTime(12, 4)})
    {
        Time().SetLocal(now);
        QVERIFY(!action->IsEarly());
    }
    QCOMPARE(Bus().Requests().size(), 3);
}

void PlaylistTimingTest::APlaylistThatIsStoppedAtOnceIsSkipped()
{
    Data().WritePlaylist("track1.mp3;298\ntrack2.mp3;20\n", u"xmas"_s);
    Time().SetLocal(QTime(12, 2));
    StartWith({"1111111|12:00:00|*|*|*|||PlayPlaylist|xmas,-1,id", "1111111|12:02:05|*|*|*|||StopPlaylist|id"});

    // It could be joined, but would be stopped five seconds later.
    CheckFar();
    EXPECT_LOG(4, {"2 [Scheduler.cpp] TASK_STOP_PLAYLIST: 12:02:05 | NOW+10s: 12:02:10",
                   "2 [Scheduler.cpp] VIRTUALLY STOPPED action found: 2 (PlayPlaylist, id), SKIPPED and marked "
                   "COMPLETED",
                   "4 [Scheduler.cpp] EARLY action found: 13 (StopPlaylist)"});
    const auto& play = *SchedulerAccess::FarActions(Engine()).begin();
    QCOMPARE(play->m_task->m_type, TASK_PLAY_PLAYLIST);
    QVERIFY(static_cast<const PlayPlaylist&>(*play->m_task).IsCompleted());

    // The stop is in the other list now and no longer found; the mark alone keeps the playlist out.
    CheckFar();
    Time().SetLocal(QTime(12, 4));
    CheckFar();
    EXPECT_LOG(4, {MissedLines::Missed("13 (StopPlaylist)", 2, "12:02:05", MissedLines::CLOCK_FORWARD)});
    EXPECT_REQUESTS(Bus(), {});

    // The next day it is played, which takes the mark away.
    Time().SetLocal(QDate(2024, 5, 16), QTime(11, 59, 50));
    CheckFar();
    Time().SetLocal(QTime(11, 59, 52));
    CheckEarly();
    EXPECT_REQUESTS(Bus(), {u"sound.PlayPlaylist ssusb xmas id 1 12:00:00 false"_s});
    LogRecorder::Clear();
}

OZNA_CASE(PlaylistTiming, PlaylistTimingTest)
#include "tst_PlaylistTiming.moc"

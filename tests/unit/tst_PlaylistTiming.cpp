#include "Action.h"
#include "ActionLine.h"
#include "MissedLines.h"
#include "Rows.h"
#include "SchedulerAccess.h"
#include "SchedulerTest.h"
#include "Suite.h"
#include "tasks/PlayPlaylist.h"

#include <SoundManagerProxy.h>

using namespace Qt::StringLiterals;

namespace
{

constexpr unsigned int GREATEST_DELAY_S = 0x7FFFFFFF;

using Delays = Rows<QByteArray, unsigned int, int, int>;

} // namespace

// Joining a playlist late: which track is first, until when, and when not at all.
class PlaylistTimingTest final : public SchedulerTest
{
    Q_OBJECT
private Q_SLOTS:
    void ADelayChoosesTheFirstTrack_data();
    void ADelayChoosesTheFirstTrack();
    void EachDelayCountsFromTheFirstTrack();
    void ALatePlaylistIsJoined();
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
    QList<Delays::Entry> rows;
    // starts: the delays, each with the track that is first then; 0: refused
    const auto add = [&rows](const QByteArray& name, const QByteArray& content, int total_s,
                             const QList<std::pair<unsigned int, int>>& starts) {
        for (const auto& [delay_s, first] : starts)
            rows.append({name + ", " + QByteArray::number(delay_s) + " s late", content, delay_s, first, total_s});
    };
    // At 62 s the second track begins: past the list's end. As a signed number the last two are no delay.
    add("two tracks", "track1.mp3;60\ntrack2.mp3;30\n", 92,
        {{0, 1},
         {1, 2},
         {10, 2},
         {59, 2},
         {61, 2},
         {62, 3},
         {70, 3},
         {91, 3},
         {92, 0},
         {93, 0},
         {86400, 0},
         {GREATEST_DELAY_S, 0},
         {GREATEST_DELAY_S + 1U, 1},
         {0xFFFFFFFFU, 1}});
    add("one track", "track1.mp3;300\n", 300, {{1, 2}, {299, 2}, {300, 0}});
    add("three tracks", "track1.mp3;60\ntrack2.mp3;30\ntrack3.mp3;100\n", 194,
        {{61, 2}, {62, 3}, {93, 3}, {94, 4}, {193, 4}, {194, 0}});
    add("tracks of 0 s", "track1.mp3;000\ntrack2.mp3;000\ntrack3.mp3;000\n", 4, {{1, 2}, {2, 3}, {3, 3}, {4, 0}});
    add("a negative track", "track1.mp3;-5\ntrack2.mp3;30\n", 27, {{10, 3}, {26, 3}, {27, 0}});
    // The total is negative, and as an unsigned number greater than any delay.
    add("a negative total", "track1.mp3;-100\ntrack2.mp3;30\n", -68, {{10, 3}, {GREATEST_DELAY_S, 3}});
    add("the longest track", "track1.mp3;2147483647\ntrack2.mp3;30\n", -2147483617, {{GREATEST_DELAY_S, 2}});
    Delays::Add(rows);
}

void PlaylistTimingTest::ADelayChoosesTheFirstTrack()
{
    const auto& [content, delay_s, first, total_s] = Delays::Current();
    Data().WritePlaylist(content, u"xmas"_s);
    PlayPlaylist task(u"12:00:00"_s, u"xmas"_s, u"-1"_s, u"id"_s);
    LogRecorder::Clear();
    task.PrepareDelayed(delay_s);
    if (static_cast<int>(delay_s) <= 0)
        EXPECT_LOG(9, {"5 [tasks/PlayPlaylist.cpp] PlayPlaylist NOT delayed: will start from track 1"});
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

void PlaylistTimingTest::EachDelayCountsFromTheFirstTrack()
{
    Data().WritePlaylist("track1.mp3;60\ntrack2.mp3;30\n", u"xmas"_s);
    const QList<std::pair<QList<unsigned int>, int>> rows{
        {{70, 70}, 3},
        {{70, 10}, 2},
        {{10, 70}, 3},
        {{70, 0}, 1},
        {{10, 10, 10, 10, 10}, 2},
        // One that is refused changes nothing.
        {{70, 92}, 3},
        {{92, 10}, 2},
    };
    for (const auto& [delays_s, first] : rows)
    {
        PlayPlaylist task(u"12:00:00"_s, u"xmas"_s, u"-1"_s, u"id"_s);
        for (const unsigned int delay_s : delays_s)
            task.PrepareDelayed(delay_s);
        QVERIFY(task.Run());
        EXPECT_REQUESTS(Bus(), {u"sound.PlayPlaylist ssusb xmas id %1 12:00:00 false"_s.arg(first)});
        Q_EMIT Scheduler::m_soundManProxy->PlayPlaylistCompleted(u"xmas"_s);
    }
    LogRecorder::Clear();
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

void PlaylistTimingTest::ACompletedPlaylistIsNotJoined()
{
    // Whether it is early before it has been played, and afterwards: from 12 s ahead, until its last track starts.
    for (const auto& [now, isEarly, isStillEarly] : {std::tuple(QTime(11, 59, 47), false, false),
                                                     {QTime(11, 59, 48), true, true},
                                                     {QTime(11, 59, 59), true, true},
                                                     {QTime(12, 0), true, false},
                                                     {QTime(12, 0, 1), true, false},
                                                     {QTime(12, 5), true, false},
                                                     {QTime(12, 5, 1), false, false}})
    {
        const std::unique_ptr<Action> action = PlayAtNoon();
        Time().SetLocal(now);
        QCOMPARE(action->IsEarly(), isEarly);
        action->m_task->SetCompleted(true);
        QCOMPARE(action->IsEarly(), isStillEarly);
        action->m_task->SetCompleted(false);
        QCOMPARE(action->IsEarly(), isEarly);
    }
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

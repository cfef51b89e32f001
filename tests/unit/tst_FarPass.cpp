#include "FakeTask.h"
#include "Rows.h"
#include "SchedulerTest.h"
#include "Suite.h"

using namespace Qt::StringLiterals;

namespace
{

// The trace that each far pass begins with.
LogLines Counters(int far, int early)
{
    return {"9 [Scheduler.cpp] Checking far actions",
            "9 [Scheduler.cpp] ----------------------------",
            "9 [Scheduler.cpp] > FarActions:     " + QByteArray::number(far),
            "9 [Scheduler.cpp] > EarlyActions:   " + QByteArray::number(early),
            "9 [Scheduler.cpp] > TOTAL ACTIONS:  " + QByteArray::number(far + early),
            "9 [Scheduler.cpp] ----------------------------"};
}

LogLines Early(const QByteArray& type, const QByteArray& name)
{
    return {"5 [Action.cpp] Task " + name + " IsEarly: active in <12 seconds",
            "4 [Scheduler.cpp] EARLY action found: " + type + " (" + name + ")"};
}

QByteArray Line(const char* start, const char* task)
{
    return QByteArray("1111111|") + start + "|*|*|*|||" + task;
}

} // namespace

// It is 12:00:00 unless a test says otherwise.
class FarPassTest final : public SchedulerTest
{
    Q_OBJECT
private Q_SLOTS:
    void AnEmptyScheduleLogsItsCountersOnly();
    void AnEarlyActionIsMoved();
    void EarlyActionsAreMovedInFileOrder();
    void WhatIsNotEarlyStays();
    void ARunningTaskStays();
    void AnActionWaitsInTheEarlyList();
    void APlaylistIsSkippedWhenItsStopIsNear_data();
    void APlaylistIsSkippedWhenItsStopIsNear();
    void OfTwoStopsOfOnePlaylistNoneIsSkipped();
    void ASkippedPlaylistLogsItsStop();
    void AStopThatIsWatchedAlreadySkipsNothing();
    void TheFirstStopThatFitsIsNamed();
};

void FarPassTest::AnEmptyScheduleLogsItsCountersOnly()
{
    StartWith({});
    CheckFar();
    EXPECT_LOG(9, (Counters(0, 0)));
}

void FarPassTest::AnEarlyActionIsMoved()
{
    StartWith({Line("12:00:10", "Volume|5")});
    CheckFar();
    EXPECT_LOG(9, (Counters(1, 0) + Early("5", "Volume")));
    QCOMPARE(FarList(), QStringList());
    QCOMPARE(EarlyList(), QStringList(u"Volume 12:00:10"_s));
    CheckFar();
    EXPECT_LOG(9, (Counters(0, 1)));
}

void FarPassTest::EarlyActionsAreMovedInFileOrder()
{
    StartWith({Line("12:00:12", "Volume|1"), Line("12:00:13", "Light|1"), Line("12:00:01", "StopMessage"),
               Line("12:00:05", "PlayMessage|a")});
    CheckFar();
    EXPECT_LOG(9, (Counters(4, 0) + Early("5", "Volume") + Early("14", "StopMessage") + Early("1", "PlayMessage")));
    QCOMPARE(FarList(), QStringList(u"Light 12:00:13"_s));
    QCOMPARE(EarlyList(), (QStringList{u"Volume 12:00:12"_s, u"StopMessage 12:00:01"_s, u"PlayMessage 12:00:05"_s}));

    // What comes later is appended.
    Time().Advance_s(1);
    CheckFar();
    EXPECT_LOG(9, (Counters(1, 3) + Early("0", "Light")));
    QCOMPARE(EarlyList().last(), u"Light 12:00:13"_s);
}

void FarPassTest::WhatIsNotEarlyStays()
{
    StartWith({Line("12:00:00", "Volume|1"), Line("11:59:59", "Volume|1"), Line("12:00:13", "Volume|1"),
               "0000000|12:00:05|*|*|*|||Volume|1", "1111111|12:00:05|*|*|*|20240516||Volume|1"});
    CheckFar();
    EXPECT_LOG(9, (Counters(5, 0)));
    QCOMPARE(FarList().size(), 5);
}

void FarPassTest::ARunningTaskStays()
{
    StartWith({Line("12:00:10", "PlayMessage|a")});
    FakeTask::Living()[0]->m_running = true;
    CheckFar();
    EXPECT_LOG(9, (Counters(1, 0)));
    QCOMPARE(FarList().size(), 1);
}

void FarPassTest::AnActionWaitsInTheEarlyList()
{
    StartWith({Line("12:00:10", "Volume|1")});
    CheckFar();
    LogRecorder::Clear();
    for (int second = 1; second < 10; ++second)
    {
        Time().Advance_s(1);
        CheckFar();
        CheckEarly();
        EXPECT_LOG(9, (Counters(0, 1)));
    }
    QCOMPARE(EarlyList().size(), 1);
}

void FarPassTest::APlaylistIsSkippedWhenItsStopIsNear_data()
{
    const QByteArray play = Line("10:00:00", "PlayPlaylist|list,-1,xmas");
    const QByteArray stop = Line("10:00:05", "StopPlaylist|xmas");
    Rows<QTime, QByteArray, QByteArray, bool>::Add({
        {"ten seconds before the stop is not near", QTime(9, 59, 55), play, stop, false},
        {"a millisecond less is near", QTime(9, 59, 55, 1), play, stop, true},
        {"half a second less is near", QTime(9, 59, 55, 500), play, stop, true},
        {"nine seconds before the stop", QTime(9, 59, 56), play, stop, true},
        {"just before the play", QTime(9, 59, 59, 999), play, stop, true},
        {"eleven seconds before the stop", QTime(9, 59, 54), play, stop, false},
        {"a stop far off", QTime(9, 59, 55), play, Line("11:00:00", "StopPlaylist|xmas"), false},
        {"a stop of another playlist", QTime(9, 59, 58), play, Line("10:00:05", "StopPlaylist|easter"), false},
        {"a stop in another case", QTime(9, 59, 58), play, Line("10:00:05", "StopPlaylist|Xmas"), false},
        {"a stop whose identifier only begins the same", QTime(9, 59, 58), play, Line("10:00:05", "StopPlaylist|xma"),
         false},
        {"a stop without identifier", QTime(9, 59, 58), play, Line("10:00:05", "StopPlaylist"), false},
        {"neither has an identifier", QTime(9, 59, 58), Line("10:00:00", "PlayPlaylist|list"),
         Line("10:00:05", "StopPlaylist"), false},
        {"a stop at the same time", QTime(9, 59, 58), play, Line("10:00:00", "StopPlaylist|xmas"), false},
        {"a stop before the play", QTime(9, 59, 58), play, Line("09:59:59", "StopPlaylist|xmas"), false},
        {"a stop a second after the play", QTime(9, 59, 58), play, Line("10:00:01", "StopPlaylist|xmas"), true},
        {"another task that stops", QTime(9, 59, 58), play, Line("10:00:05", "StopMessage|xmas"), false},
        {"a message is never skipped", QTime(9, 59, 58), Line("10:00:00", "PlayMessage|list,-1,xmas"), stop, false},
        {"a stop that is due on another day counts as well", QTime(9, 59, 58), play,
         "0000000|10:00:05|*|*|*|||StopPlaylist|xmas", true},
        // Ten seconds from now is after midnight: no time of this day is before it.
        {"a stop before midnight", QTime(23, 59, 52), Line("23:59:57", "PlayPlaylist|list,-1,xmas"),
         Line("23:59:59", "StopPlaylist|xmas"), false},
        {"a stop before midnight, ten seconds from now still today", QTime(23, 59, 49, 999),
         Line("23:59:57", "PlayPlaylist|list,-1,xmas"), Line("23:59:59", "StopPlaylist|xmas"), true},
    });
}

void FarPassTest::OfTwoStopsOfOnePlaylistNoneIsSkipped()
{
    Time().SetLocal(QTime(9, 59, 58));
    StartWith({Line("10:00:00", "StopPlaylist|xmas"), Line("10:00:05", "StopPlaylist|xmas")});
    CheckFar();
    QCOMPARE(EarlyList().size(), 2);
}

void FarPassTest::APlaylistIsSkippedWhenItsStopIsNear()
{
    const auto& [now, play, stop, skipped] = Rows<QTime, QByteArray, QByteArray, bool>::Current();
    // Whether the stop stands before or after the play in the file makes no difference.
    for (const QByteArrayList& lines : {QByteArrayList{play, stop}, QByteArrayList{stop, play}})
    {
        Time().SetLocal(now);
        StartWith(lines);
        FakeTask* const task = FakeTask::Living()[lines[0] == play ? 0 : 1];
        const QString name = task->GetName();
        CheckFar();
        const QStringList found = LogRecorder::Messages(4);
        const QString shown = u"EARLY action found: %1 (%2)"_s.arg(static_cast<int>(task->m_type)).arg(name);
        QCOMPARE(found.contains(shown), !skipped);
        QCOMPARE(FarList().filter(name).size(), skipped ? 1 : 0);
        QCOMPARE(EarlyList().filter(name).size(), skipped ? 0 : 1);
        QCOMPARE(task->m_calls, skipped ? QStringList(u"SetCompleted 1"_s) : QStringList());
        QCOMPARE(LogRecorder::Records(2).size(), skipped ? 2 : 0);
        LogRecorder::Clear();
    }
}

void FarPassTest::ASkippedPlaylistLogsItsStop()
{
    Time().SetLocal(QTime(9, 59, 58, 900));
    StartWith({Line("10:00:00", "PlayPlaylist|list,-1,xmas"), Line("10:00:05", "StopPlaylist|xmas")});
    CheckFar();
    const LogLines skipped{
        "5 [Action.cpp] Task PlayPlaylist IsEarly: active in <12 seconds",
        "2 [Scheduler.cpp] TASK_STOP_PLAYLIST: 10:00:05 | NOW+10s: 10:00:08",
        "2 [Scheduler.cpp] VIRTUALLY STOPPED action found: 2 (PlayPlaylist, xmas), SKIPPED and marked COMPLETED"};
    EXPECT_LOG(9, (Counters(2, 0) + skipped + Early("13", "StopPlaylist")));
}

void FarPassTest::AStopThatIsWatchedAlreadySkipsNothing()
{
    Time().SetLocal(QTime(9, 59, 56));
    StartWith({Line("10:00:00", "PlayPlaylist|list,-1,xmas"), Line("10:00:05", "StopPlaylist|xmas")});
    CheckFar();
    QCOMPARE(EarlyList(), QStringList(u"StopPlaylist 10:00:05"_s));
    LogRecorder::Clear();
    // Only stops of the far list are looked at.
    Time().Advance_s(3);
    CheckFar();
    EXPECT_LOG(4, {"4 [Scheduler.cpp] EARLY action found: 2 (PlayPlaylist)"});
}

void FarPassTest::TheFirstStopThatFitsIsNamed()
{
    Time().SetLocal(QTime(9, 59, 58));
    StartWith({Line("10:00:00", "PlayPlaylist|list,-1,xmas"), Line("10:00:08", "StopPlaylist|xmas"),
               Line("10:00:07", "StopPlaylist|xmas"), Line("10:00:03", "StopPlaylist|xmas")});
    CheckFar();
    QCOMPARE(LogRecorder::Messages(2)[0], u"TASK_STOP_PLAYLIST: 10:00:07 | NOW+10s: 10:00:08"_s);
    LogRecorder::Clear();
}

OZNA_CASE(FarPass, FarPassTest)
#include "tst_FarPass.moc"

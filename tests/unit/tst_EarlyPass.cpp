#include "FakeTask.h"
#include "SchedulerTest.h"
#include "Suite.h"

using namespace Qt::StringLiterals;

namespace
{

QByteArray Line(const char* start, const char* task)
{
    return QByteArray("1111111|") + start + "|*|*|*|||" + task;
}

LogLines Started(const QByteArray& type, const QByteArray& name)
{
    return {"5 [Action.cpp] Task " + name + " IsReady (in time)",
            "4 [Scheduler.cpp] READY action found: " + type + " (" + name + ")",
            "5 [Action.cpp] Action '" + name + "' delay: 0 s (0=no-delay)",
            "9 [Action.cpp] Task " + name + " is starting !"};
}

const QStringList RUN_IN_TIME{u"PrepareDelayed 0"_s, u"Run"_s};

} // namespace

// It is 12:00:00 unless a test says otherwise.
class EarlyPassTest final : public SchedulerTest
{
    Q_OBJECT
private Q_SLOTS:
    void AnEmptyListLogsNothing();
    void AReadyActionIsStartedAndReturns();
    void WhatIsNeitherReadyNorLostStays();
    void SeveralReadyActionsStartInOnePass();
    void StartedActionsReturnBehindTheOthers();
    void ALostActionReturns();
    void StartedActionsReturnBeforeLostOnes();
    void ALatePlaylistIsPrepared();
    void AForcedActionStartsOnce();
    void AMissedActionWaitsForItsNextTime();
    void ARefusedMessageIsAskedAgain();
};

void EarlyPassTest::AnEmptyListLogsNothing()
{
    StartWith({Line("12:00:00", "Volume|1")});
    CheckEarly();
    EXPECT_LOG(9, {});
    QCOMPARE(FakeTask::Living()[0]->m_calls, QStringList());
}

void EarlyPassTest::AReadyActionIsStartedAndReturns()
{
    StartWith({Line("12:00:10", "Volume|1")});
    CheckFar();
    Time().Advance_s(10);
    LogRecorder::Clear();
    CheckEarly();
    EXPECT_LOG(9, (Started("5", "Volume")));
    QCOMPARE(FakeTask::Living()[0]->m_calls, RUN_IN_TIME);
    QCOMPARE(FarList(), QStringList(u"Volume 12:00:10"_s));
    QCOMPARE(EarlyList(), QStringList());
    // Not again: it is not early any more.
    CheckFar();
    CheckEarly();
    QCOMPARE(FakeTask::Living()[0]->m_calls, RUN_IN_TIME);
}

void EarlyPassTest::WhatIsNeitherReadyNorLostStays()
{
    StartWith({Line("12:00:10", "Volume|1"), Line("12:00:12", "PlayMessage|a")});
    CheckFar();
    LogRecorder::Clear();
    CheckEarly();
    EXPECT_LOG(9, {});
    QCOMPARE(EarlyList().size(), 2);
}

void EarlyPassTest::SeveralReadyActionsStartInOnePass()
{
    StartWith({Line("12:00:10", "Light|1"), Line("12:00:09", "Volume|1"), Line("12:00:18", "PlayMessage|a"),
               Line("12:00:12", "StopMessage")});
    Time().Advance_s(6);
    CheckFar();
    Time().Advance_s(4);
    QStringList order;
    for (FakeTask* const task : FakeTask::Living())
        task->m_onRun = [task, &order] { order.append(task->GetName()); };
    LogRecorder::Clear();
    CheckEarly();
    EXPECT_LOG(9, (Started("0", "Light") + Started("5", "Volume") + Started("1", "PlayMessage")));
    QCOMPARE(order, (QStringList{u"Light"_s, u"Volume"_s, u"PlayMessage"_s}));
    QCOMPARE(EarlyList(), QStringList(u"StopMessage 12:00:12"_s));
    QCOMPARE(FarList(), (QStringList{u"Light 12:00:10"_s, u"Volume 12:00:09"_s, u"PlayMessage 12:00:18"_s}));
}

void EarlyPassTest::StartedActionsReturnBehindTheOthers()
{
    StartWith({Line("12:00:05", "Volume|1"), Line("13:00:00", "Light|1"), Line("14:00:00", "Light|1")});
    CheckFar();
    Time().Advance_s(5);
    CheckEarly();
    QCOMPARE(FarList(), (QStringList{u"Light 13:00:00"_s, u"Light 14:00:00"_s, u"Volume 12:00:05"_s}));
}

void EarlyPassTest::ALostActionReturns()
{
    StartWith({Line("12:00:10", "PlayMessage|a")});
    CheckFar();
    LogRecorder::Clear();
    Time().Advance_s(1);
    // Five seconds pass between the two questions, as when the processor is taken away.
    FakeTask* const task = FakeTask::Living()[0];
    task->m_onAskTolerance = [this] { Time().Advance_s(5); };
    CheckEarly();
    EXPECT_LOG(9, {"2 [Action.cpp] Task PlayMessage IsLost (ready in less than 4 s)",
                   "4 [Scheduler.cpp] LOST action found: 1 (PlayMessage)"});
    QCOMPARE(task->m_calls, QStringList());
    QCOMPARE(FarList(), QStringList(u"PlayMessage 12:00:10"_s));
    QCOMPARE(EarlyList(), QStringList());
    // Its start has been told of when it passes.
    task->m_onAskTolerance = {};
    Time().Advance_s(10);
    CheckFar();
    EXPECT_LOG(2, {});
}

void EarlyPassTest::StartedActionsReturnBeforeLostOnes()
{
    StartWith({Line("12:00:10", "PlayMessage|a"), Line("12:00:06", "Volume|1"), Line("12:00:11", "PlayMessage|b"),
               Line("12:00:05", "Light|1")});
    CheckFar();
    LogRecorder::Clear();
    Time().Advance_s(1);
    FakeTask* const first = FakeTask::Living()[0];
    first->m_onAskTolerance = [this] { Time().Advance_s(5); };
    FakeTask* const third = FakeTask::Living()[2];
    third->m_onAskTolerance = [] { QFAIL("it is in time by then"); };
    CheckEarly();
    QCOMPARE(LogRecorder::Messages(4).filter(u"found"_s),
             (QStringList{u"LOST action found: 1 (PlayMessage)"_s, u"READY action found: 5 (Volume)"_s,
                          u"READY action found: 1 (PlayMessage)"_s, u"READY action found: 0 (Light)"_s}));
    QCOMPARE(FarList(), (QStringList{u"Volume 12:00:06"_s, u"PlayMessage 12:00:11"_s, u"Light 12:00:05"_s,
                                     u"PlayMessage 12:00:10"_s}));
    LogRecorder::Clear();
}

void EarlyPassTest::ALatePlaylistIsPrepared()
{
    StartWith({Line("11:59:00", "PlayPlaylist|list")});
    FakeTask* const task = FakeTask::Living()[0];
    task->m_tolerance_s = 300;
    CheckFar();
    EXPECT_LOG(5, {"4 [Scheduler.cpp] EARLY action found: 2 (PlayPlaylist)"});
    CheckEarly();
    EXPECT_LOG(5, {"2 [Action.cpp] Task PlayPlaylist IsDelayed but still valid (accumulated delay: 60 s, tolerated "
                   "delay: 300 s)",
                   "4 [Scheduler.cpp] READY action found: 2 (PlayPlaylist)",
                   "5 [Action.cpp] Action 'PlayPlaylist' delay: 60 s (0=no-delay)"});
    QCOMPARE(task->m_calls, (QStringList{u"PrepareDelayed 60"_s, u"Run"_s}));
}

void EarlyPassTest::AForcedActionStartsOnce()
{
    StartWith({Line("08:00:00", "Light|1")});
    FakeTask* const task = FakeTask::Living()[0];
    CheckFar();
    EXPECT_LOG(5,
               {"5 [Action.cpp] Task Light IsEarly (forced ready)", "4 [Scheduler.cpp] EARLY action found: 0 (Light)"});
    CheckEarly();
    EXPECT_LOG(5,
               {"5 [Action.cpp] Task Light IsReady (forced ready)", "4 [Scheduler.cpp] READY action found: 0 (Light)",
                "5 [Action.cpp] Action 'Light' delay: 0 s (0=no-delay)"});
    QCOMPARE(task->m_calls, RUN_IN_TIME);
    CheckFar();
    CheckEarly();
    EXPECT_LOG(5, {});
    QCOMPARE(task->m_calls, RUN_IN_TIME);
}

void EarlyPassTest::AMissedActionWaitsForItsNextTime()
{
    StartWith({Line("12:00:10", "Volume|1")});
    FakeTask* const task = FakeTask::Living()[0];
    CheckFar();
    LogRecorder::Clear();
    // A peer has blocked the loop past the last moment.
    Time().Advance_s(13);
    CheckEarly();
    EXPECT_LOG(9, {});
    QCOMPARE(EarlyList().size(), 1);
    Time().Advance_s(24 * 3600 - 4);
    CheckEarly();
    QCOMPARE(task->m_calls, QStringList());
    Time().Advance_s(1);
    CheckEarly();
    QCOMPARE(task->m_calls, RUN_IN_TIME);
    QCOMPARE(FarList().size(), 1);
}

void EarlyPassTest::ARefusedMessageIsAskedAgain()
{
    StartWith({Line("12:00:10", "PlayMessage|a")});
    FakeTask* const task = FakeTask::Living()[0];
    // Refused three times, then accepted.
    int asked = 0;
    task->m_onRun = [&] { task->m_running = ++asked == 4; };
    for (int tick = 0; tick < 15; ++tick)
    {
        CheckFar();
        CheckEarly();
        Time().Advance_s(1);
    }
    QCOMPARE(asked, 4);
    LogRecorder::Clear();
}

OZNA_CASE(EarlyPass, EarlyPassTest)
#include "tst_EarlyPass.moc"

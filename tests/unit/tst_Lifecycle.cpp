#include "SchedulerAccess.h"
#include "SchedulerLines.h"
#include "SchedulerTest.h"
#include "Suite.h"

#include <QSignalSpy>

using namespace Qt::StringLiterals;
using namespace SchedulerLines;

namespace
{

const QByteArray LINE = "1111111|08:30:00|*|*|*|||StopMessage\n"_ba;

} // namespace

class LifecycleTest final : public SchedulerTest
{
    Q_OBJECT
private Q_SLOTS:
    void ANewSchedulerIsEnabledAndIdle();
    void TheScheduleFolderStandsInTheDataFolder();
    void RunStartsTheSchedule();
    void RunDoesNotStartADisabledScheduler();
    void StopEndsEverything();
    void EnablingWhatIsEnabledReloadsNothing();
    void DisablingStops();
    void DisablingTwiceTellsTwice();
    void EnablingStartsTheCurrentFile();
    void ReloadingReadsTheFileAgain();
    void ReloadingADisabledSchedulerDoesNothing();
    void AnotherFileIsReadAtOnce();
    void AnotherFileOfADisabledSchedulerWaits();
    void TheEarlyTimerRunsWhileAnActionIsWatched();

private:
    void Begin() override;

    // What Start logs on the file of the test.
    LogLines Started() { return SchedulerLines::Started(Data(), u"schedule.csv"_s, ONE_STOP); }

    QString EnabledState();
};

void LifecycleTest::Begin()
{
    Data().WriteSchedule(LINE);
    Create();
}

QString LifecycleTest::EnabledState()
{
    bool enabled = false;
    QString name;
    const int status = Engine().IsEnabled(enabled, name);
    return u"%1 %2 %3"_s.arg(status).arg(enabled).arg(name);
}

void LifecycleTest::ANewSchedulerIsEnabledAndIdle()
{
    QCOMPARE(EnabledState(), u"0 1 schedule.csv"_s);
    QCOMPARE(FarList(), QStringList());
    const QTimer& far = SchedulerAccess::FarTimer(Engine());
    const QTimer& early = SchedulerAccess::EarlyTimer(Engine());
    QVERIFY(!far.isActive());
    QVERIFY(!early.isActive());
    QCOMPARE(far.interval(), 3000);
    QCOMPARE(far.timerType(), Qt::PreciseTimer);
    QCOMPARE(early.timerType(), Qt::PreciseTimer);
    QVERIFY(!far.isSingleShot());
    QCOMPARE(Engine().parent(), nullptr);
    EXPECT_LOG(9, {});
}

void LifecycleTest::TheScheduleFolderStandsInTheDataFolder()
{
    QCOMPARE(Scheduler::GetSchedulePath(), Data().Path() + u"/schedule"_s);
}

void LifecycleTest::RunStartsTheSchedule()
{
    const QSignalSpy told(&Engine(), &Scheduler::SchedulingEnabled);
    Engine().Run();
    EXPECT_LOG(4, (Started()));
    QVERIFY(SchedulerAccess::FarTimer(Engine()).isActive());
    QVERIFY(!SchedulerAccess::EarlyTimer(Engine()).isActive());
    QCOMPARE(FarList(), QStringList(u"StopMessage 08:30:00"_s));
    QCOMPARE(told.size(), 0);
}

void LifecycleTest::RunDoesNotStartADisabledScheduler()
{
    Engine().SetEnabled(false);
    LogRecorder::Clear();
    Engine().Run();
    EXPECT_LOG(9, (DISABLED));
    QVERIFY(!SchedulerAccess::FarTimer(Engine()).isActive());
}

void LifecycleTest::StopEndsEverything()
{
    Data().WriteSchedule(LINE + "1111111|12:00:10|*|*|*|||PlayMessage|gong.mp3\n");
    Engine().Start();
    CheckFar();
    QCOMPARE(FarList().size(), 1);
    QCOMPARE(EarlyList().size(), 1);
    LogRecorder::Clear();
    Engine().Stop();
    EXPECT_LOG(9, (STOPPED));
    QVERIFY(!SchedulerAccess::FarTimer(Engine()).isActive());
    QVERIFY(!SchedulerAccess::EarlyTimer(Engine()).isActive());
    QCOMPARE(FarList(), QStringList());
    QCOMPARE(EarlyList(), QStringList());
    QCOMPARE(EnabledState(), u"0 1 schedule.csv"_s);
}

void LifecycleTest::EnablingWhatIsEnabledReloadsNothing()
{
    Engine().Run();
    LogRecorder::Clear();
    const QSignalSpy told(&Engine(), &Scheduler::SchedulingEnabled);
    QCOMPARE(Engine().SetEnabled(true), 0);
    EXPECT_LOG(9, (ENABLED));
    QCOMPARE(told.size(), 1);
    QCOMPARE(told[0], (QVariantList{true, u"schedule.csv"_s}));
}

void LifecycleTest::DisablingStops()
{
    Engine().Run();
    LogRecorder::Clear();
    const QSignalSpy told(&Engine(), &Scheduler::SchedulingEnabled);
    QCOMPARE(Engine().SetEnabled(false), 0);
    EXPECT_LOG(9, (ENABLED + STOPPED + LogLines{"4 [Scheduler.cpp] Scheduling disabled"}));
    QCOMPARE(told.size(), 1);
    QCOMPARE(told[0], (QVariantList{false, u"schedule.csv"_s}));
    QCOMPARE(EnabledState(), u"0 0 schedule.csv"_s);
    QVERIFY(!SchedulerAccess::EarlyTimer(Engine()).isActive());
}

void LifecycleTest::DisablingTwiceTellsTwice()
{
    Engine().SetEnabled(false);
    LogRecorder::Clear();
    const QSignalSpy told(&Engine(), &Scheduler::SchedulingEnabled);
    QCOMPARE(Engine().SetEnabled(false), 0);
    EXPECT_LOG(9, (DISABLED));
    QCOMPARE(told.size(), 1);
    QCOMPARE(told[0], (QVariantList{false, u"schedule.csv"_s}));
}

void LifecycleTest::EnablingStartsTheCurrentFile()
{
    Engine().SetEnabled(false);
    LogRecorder::Clear();
    const QSignalSpy told(&Engine(), &Scheduler::SchedulingEnabled);
    qsizetype recordsWhenTold = 0;
    connect(&Engine(), &Scheduler::SchedulingEnabled, this,
            [&recordsWhenTold] { recordsWhenTold = LogRecorder::Records(4).size(); });
    QCOMPARE(Engine().SetEnabled(true), 0);
    const LogLines lines = DISABLED + Started() + LogLines{"4 [Scheduler.cpp] Scheduling enabled (schedule.csv)"};
    EXPECT_LOG(4, (lines));
    QCOMPARE(recordsWhenTold, lines.size());
    QCOMPARE(told.size(), 1);
    QCOMPARE(told[0], (QVariantList{true, u"schedule.csv"_s}));
    QVERIFY(SchedulerAccess::FarTimer(Engine()).isActive());
}

void LifecycleTest::ReloadingReadsTheFileAgain()
{
    Engine().Run();
    Data().WriteSchedule("1111111|08:30:00|*|*|*|||PlayMessage|gong.mp3\n");
    LogRecorder::Clear();
    const QSignalSpy told(&Engine(), &Scheduler::SchedulingEnabled);
    QCOMPARE(Engine().Reload(), 0);
    LogLines started = Started();
    started[2] = {"4 [tasks/PlayMessage.cpp] TASK CREATED | PlayMessage: gong.mp3 @ 08:30:00 (vol=-1)"};
    EXPECT_LOG(4, (RESTARTING + STOPPED + started));
    QCOMPARE(FarList(), QStringList(u"PlayMessage 08:30:00"_s));
    QCOMPARE(told.size(), 0);
}

void LifecycleTest::ReloadingADisabledSchedulerDoesNothing()
{
    Engine().SetEnabled(false);
    LogRecorder::Clear();
    const QSignalSpy told(&Engine(), &Scheduler::SchedulingEnabled);
    QCOMPARE(Engine().Reload(), 0);
    EXPECT_LOG(9, {});
    QCOMPARE(told.size(), 0);
}

void LifecycleTest::AnotherFileIsReadAtOnce()
{
    Engine().Run();
    LogRecorder::Clear();
    const QSignalSpy told(&Engine(), &Scheduler::SchedulingEnabled);
    QCOMPARE(Engine().SetScheduleFile(u"other.csv"_s), 0);
    const LogLines set{"4 [Scheduler.cpp] Schedule file set to other.csv"};
    EXPECT_LOG(9, (set + RESTARTING + STOPPED + SchedulerLines::Started(Data(), u"other.csv"_s, NOT_FOUND)));
    QCOMPARE(EnabledState(), u"0 1 other.csv"_s);
    QCOMPARE(told.size(), 0);
}

void LifecycleTest::AnotherFileOfADisabledSchedulerWaits()
{
    Engine().SetEnabled(false);
    LogRecorder::Clear();
    QCOMPARE(Engine().SetScheduleFile(u"other.csv"_s), 0);
    EXPECT_LOG(9, {"4 [Scheduler.cpp] Schedule file set to other.csv"});
    QCOMPARE(EnabledState(), u"0 0 other.csv"_s);

    Data().WriteSchedule(LINE, u"other.csv"_s);
    Engine().SetEnabled(true);
    EXPECT_LOG(4, (DISABLED + SchedulerLines::Started(Data(), u"other.csv"_s, ONE_STOP) +
                   LogLines{"4 [Scheduler.cpp] Scheduling enabled (other.csv)"}));
}

void LifecycleTest::TheEarlyTimerRunsWhileAnActionIsWatched()
{
    Data().WriteSchedule("1111111|12:00:10|*|*|*|||StopMessage\n");
    QTimer& far = SchedulerAccess::FarTimer(Engine());
    const QTimer& early = SchedulerAccess::EarlyTimer(Engine());
    far.setInterval(1);
    Engine().Start();
    QTRY_VERIFY(early.isActive());
    QCOMPARE(EarlyList().size(), 1);
    Time().Advance_s(10);
    QTRY_VERIFY(!early.isActive());
    QCOMPARE(FarList().size(), 1);
    QVERIFY(far.isActive());
}

OZNA_CASE(Lifecycle, LifecycleTest)
#include "tst_Lifecycle.moc"

#include "Rows.h"
#include "SchedulerAccess.h"
#include "SchedulerLines.h"
#include "SchedulerTest.h"
#include "Suite.h"

#include <UpdateManagerProxy.h>

#include <QElapsedTimer>
#include <QMetaMethod>
#include <QSignalSpy>

using namespace Qt::StringLiterals;
using namespace SchedulerLines;

namespace
{

const QByteArray LINE = "1111111|08:30:00|*|*|*|||StopMessage\n"_ba;

} // namespace

class SchedulerSignalsTest final : public SchedulerTest
{
    Q_OBJECT
private Q_SLOTS:
    void ItsSignalsComeInOrder();
    void APddActionIsAnnounced_data();
    void APddActionIsAnnounced();
    void AnUpdateReloads();
    void AnUpdateEnables();
    void OtherUpdatesAreIgnored_data();
    void OtherUpdatesAreIgnored();
    void TheDestructorStopsAgain();
    void TheTimersFireOneIntervalAfterTheStart();

private:
    void Begin() override;

    // What Start logs on the file of the test.
    LogLines Started() { return SchedulerLines::Started(Data(), u"schedule.csv"_s, ONE_STOP); }
};

void SchedulerSignalsTest::Begin()
{
    Data().WriteSchedule(LINE);
    Create();
}

void SchedulerSignalsTest::ItsSignalsComeInOrder()
{
    const QMetaObject& metaObject = Scheduler::staticMetaObject;
    const QMetaMethod first = metaObject.method(metaObject.methodOffset());
    const QMetaMethod second = metaObject.method(metaObject.methodOffset() + 1);
    QCOMPARE(first.methodSignature(), "SchedulingEnabled(bool,QString)"_ba);
    QCOMPARE(first.parameterNames(), (QByteArrayList{"enabled"_ba, "filename"_ba}));
    QCOMPARE(second.methodSignature(), "ExpectedPddAction(uint,bool)"_ba);
    QCOMPARE(second.parameterNames(), (QByteArrayList{"actionId"_ba, "enable"_ba}));
}

void SchedulerSignalsTest::APddActionIsAnnounced_data()
{
    Rows<int, bool, QByteArray>::Add({
        {"the microphone's stream, on", 1, true, "STREAM_MIC, enable=1"},
        {"the microphone's stream, off", 1, false, "STREAM_MIC, enable=0"},
        {"none, on", 0, true, "UNKNOWN, enable=1"},
        {"none, off", 0, false, "UNKNOWN, enable=0"},
        {"another", 2, true, "UNKNOWN, enable=1"},
        {"a negative one", -1, true, "UNKNOWN, enable=1"},
    });
}

void SchedulerSignalsTest::APddActionIsAnnounced()
{
    const auto& [action, enable, text] = Rows<int, bool, QByteArray>::Current();
    const QSignalSpy expected(&Engine(), &Scheduler::ExpectedPddAction);
    Engine().OnPddActionRequested(static_cast<PDD_ACTION>(action), enable);
    EXPECT_LOG(9, {"4 [Scheduler.cpp] >>> Requesting PDD Action: action=" + text});
    QCOMPARE(expected.size(), 1);
    QCOMPARE(expected[0], (QVariantList{static_cast<uint>(action), enable}));
}

void SchedulerSignalsTest::AnUpdateReloads()
{
    Engine().Run();
    LogRecorder::Clear();
    const QSignalSpy told(&Engine(), &Scheduler::SchedulingEnabled);
    Q_EMIT Scheduler::m_updateManProxy->FilesUpdated(0, 2);
    const LogLines updated{"4 [Scheduler.cpp] Schedule file updated"};
    EXPECT_LOG(4, (updated + RESTARTING + STOPPED + Started()));
    QCOMPARE(told.size(), 0);
    bool enabled = false;
    QString name;
    QCOMPARE(Engine().IsEnabled(enabled, name), 0);
    QCOMPARE(enabled, true);
    QVERIFY(SchedulerAccess::FarTimer(Engine()).isActive());
}

void SchedulerSignalsTest::AnUpdateEnables()
{
    Engine().SetEnabled(false);
    LogRecorder::Clear();
    const QSignalSpy told(&Engine(), &Scheduler::SchedulingEnabled);
    Q_EMIT Scheduler::m_updateManProxy->FilesUpdated(0, 2);
    const LogLines updated{"4 [Scheduler.cpp] Schedule file updated",
                           "2 [Scheduler.cpp] Scheduler is disabled: automatically re-enable it"};
    EXPECT_LOG(4, (updated + DISABLED + Started() + LogLines{"4 [Scheduler.cpp] Scheduling enabled (schedule.csv)"}));
    QCOMPARE(told.size(), 1);
    QCOMPARE(told[0], (QVariantList{true, u"schedule.csv"_s}));
}

void SchedulerSignalsTest::OtherUpdatesAreIgnored_data()
{
    // completed: which of the two signals
    Rows<bool, int, int>::Add({
        {"a failed update of the schedule", true, 1, 2},
        {"a negative status", true, -1, 2},
        {"an update of something else", true, 0, 1},
        {"no type", true, 0, 0},
        {"both the other way round", true, 2, 0},
        {"neither", true, 1, 3},
        {"an update that has only begun", false, 0, 2},
    });
}

void SchedulerSignalsTest::OtherUpdatesAreIgnored()
{
    const auto& [completed, status, fileType] = Rows<bool, int, int>::Current();
    for (const bool enabled : {true, false})
    {
        Engine().SetEnabled(enabled);
        LogRecorder::Clear();
        const QSignalSpy told(&Engine(), &Scheduler::SchedulingEnabled);
        if (completed)
            Q_EMIT Scheduler::m_updateManProxy->FilesUpdated(status, fileType);
        else
            Q_EMIT Scheduler::m_updateManProxy->FilesUpdateStarted(status, fileType);
        EXPECT_LOG(9, {});
        QCOMPARE(told.size(), 0);
    }
}

void SchedulerSignalsTest::TheDestructorStopsAgain()
{
    Engine().Run();
    Engine().SetEnabled(false);
    LogRecorder::Clear();
    End();
    EXPECT_LOG(9, (STOPPED));
    QVERIFY(Scheduler::m_updateManProxy != nullptr);
    // Nothing listens any more.
    Q_EMIT Scheduler::m_updateManProxy->FilesUpdated(0, 2);
    EXPECT_LOG(9, {});
}

void SchedulerSignalsTest::TheTimersFireOneIntervalAfterTheStart()
{
    Data().WriteSchedule("1111111|12:00:05|*|*|*|||PlayMessage|gong.mp3\n");
    QElapsedTimer sinceStart;
    sinceStart.start();
    Engine().Start();
    LogRecorder::Clear();
    const QString ready = u"READY action found: 1 (PlayMessage)"_s;
    QTRY_VERIFY_WITH_TIMEOUT(LogRecorder::Messages().contains(ready), 30'000);
    QVERIFY(sinceStart.elapsed() >= 2999);
    // The far pass has found it, an early pass has started it.
    QCOMPARE(LogRecorder::Messages(4), (QStringList{u"EARLY action found: 1 (PlayMessage)"_s, ready}));
    QCOMPARE(LogRecorder::Messages().count(u"Checking far actions"_s), 1);
}

OZNA_CASE(SchedulerSignals, SchedulerSignalsTest)
#include "tst_SchedulerSignals.moc"

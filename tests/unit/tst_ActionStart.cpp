#include "Action.h"
#include "ActionLine.h"
#include "FakeTask.h"
#include "Rows.h"
#include "Suite.h"
#include "UnitTest.h"

#include <limits>

using namespace Qt::StringLiterals;

class ActionStartTest final : public UnitTest
{
    Q_OBJECT
private Q_SLOTS:
    void AForcedActionIsEarlyAndReadyAtAnyTime();
    void AForcedActionWaitsForItsDay();
    void AForcedActionIsNotLost();
    void ARunningTaskIsNotEarly_data();
    void ARunningTaskIsNotEarly();
    void ReadyLooksAtNeitherDayNorTask();
    void StartPreparesAndRunsTheTask_data();
    void StartPreparesAndRunsTheTask();
    void StartClearsTheForceBeforeItRuns();
    void StartDoesNotUseTheResult();
    void TheDelayIsThatOfTheLatestQuestion();
    void AnActionDeletesItsTask();

private:
    void Begin() override;
    void End() override;

    std::unique_ptr<Action> m_action;
    FakeTask* m_task = nullptr;
};

void ActionStartTest::Begin()
{
    m_action = std::make_unique<Action>(ActionLine{.start = u"12:00:00"_s}.Text());
    m_task = new FakeTask(TASK_LIGHT);
    m_action->m_task.reset(m_task);
    Time().SetLocal(QTime(12, 0));
}

void ActionStartTest::End()
{
    m_action.reset();
}

void ActionStartTest::AForcedActionIsEarlyAndReadyAtAnyTime()
{
    for (const QTime& now : {QTime(0, 0), QTime(3, 0), QTime(11, 59, 55), QTime(12, 0), QTime(12, 0, 3), QTime(23, 59)})
    {
        Time().SetLocal(now);
        m_action->m_forced = true;
        m_action->m_delay = 5;
        QVERIFY(m_action->IsEarly());
        EXPECT_LOG(9, {"5 [Action.cpp] Task Light IsEarly (forced ready)"});
        QVERIFY(m_action->IsReady());
        EXPECT_LOG(9, {"5 [Action.cpp] Task Light IsReady (forced ready)"});
        QVERIFY(m_action->m_forced);
        QCOMPARE(m_action->m_delay, 0);
    }
}

void ActionStartTest::AForcedActionWaitsForItsDay()
{
    m_action->m_forced = true;
    m_action->m_dow = 0;
    QVERIFY(!m_action->IsEarly());
    m_action->m_dow = 0x7f;
    m_action->m_hasTo = true;
    m_action->m_to = QDate(2024, 5, 14);
    QVERIFY(!m_action->IsEarly());
    EXPECT_LOG(9, {});
}

void ActionStartTest::AForcedActionIsNotLost()
{
    m_action->m_forced = true;
    QVERIFY(!m_action->IsLost());
    EXPECT_LOG(9, {});
}

void ActionStartTest::ARunningTaskIsNotEarly_data()
{
    Rows<bool, int, unsigned int>::Add({
        {"ahead", false, 5, 0U},
        {"forced", true, 5000, 0U},
        {"late but tolerated", false, -60, 300U},
    });
}

void ActionStartTest::ARunningTaskIsNotEarly()
{
    const auto& [forced, seconds, tolerance_s] = Rows<bool, int, unsigned int>::Current();
    Time().SetLocal(QTime(12, 0).addSecs(-seconds));
    m_action->m_forced = forced;
    m_task->m_tolerance_s = tolerance_s;
    QVERIFY(m_action->IsEarly());
    LogRecorder::Clear();
    m_task->m_running = true;
    QVERIFY(!m_action->IsEarly());
    EXPECT_LOG(9, {});
}

void ActionStartTest::ReadyLooksAtNeitherDayNorTask()
{
    m_action->m_dow = 0;
    m_action->m_hasTo = true;
    m_action->m_to = QDate(2000, 1, 1);
    m_task->m_running = true;
    QVERIFY(m_action->IsReady());
    EXPECT_LOG(9, {"5 [Action.cpp] Task Light IsReady (in time)"});
}

void ActionStartTest::StartPreparesAndRunsTheTask_data()
{
    Rows<int, QString>::Add({
        {"in time", 0, u"PrepareDelayed 0"_s},
        {"a second late", 1, u"PrepareDelayed 1"_s},
        {"a minute late", 60, u"PrepareDelayed 60"_s},
        {"the greatest delay", std::numeric_limits<int>::max(), u"PrepareDelayed 2147483647"_s},
        {"a negative delay counts as none", -1, u"PrepareDelayed 0"_s},
        {"the least delay counts as none", std::numeric_limits<int>::min(), u"PrepareDelayed 0"_s},
    });
}

void ActionStartTest::StartPreparesAndRunsTheTask()
{
    const auto& [delay, prepared] = Rows<int, QString>::Current();
    m_action->m_delay = delay;
    m_action->Start();
    EXPECT_LOG(9, {"5 [Action.cpp] Action 'Light' delay: " + QByteArray::number(delay) + " s (0=no-delay)",
                   "9 [Action.cpp] Task Light is starting !"});
    QCOMPARE(m_task->m_calls, (QStringList{prepared, u"Run"_s}));
}

void ActionStartTest::StartClearsTheForceBeforeItRuns()
{
    m_action->m_forced = true;
    bool forcedInRun = true;
    qsizetype recordsInRun = 0;
    m_task->m_onRun = [&] {
        forcedInRun = m_action->m_forced;
        recordsInRun = LogRecorder::Records().size();
    };
    m_action->Start();
    QVERIFY(!forcedInRun);
    QCOMPARE(recordsInRun, 2);
    QVERIFY(!m_action->m_forced);
}

void ActionStartTest::StartDoesNotUseTheResult()
{
    m_task->m_runResult = false;
    m_action->Start();
    QCOMPARE(m_task->m_calls.size(), 2);
    EXPECT_LOG(4, {});
}

void ActionStartTest::TheDelayIsThatOfTheLatestQuestion()
{
    m_task->m_tolerance_s = 300;
    Time().SetLocal(QTime(12, 1));
    QVERIFY(m_action->IsReady());
    QCOMPARE(m_action->m_delay, 60);
    Time().SetLocal(QTime(12, 5, 1));
    QVERIFY(!m_action->IsReady());
    QCOMPARE(m_action->m_delay, 301);
    Time().SetLocal(QTime(12, 0, 1));
    QVERIFY(m_action->IsReady());
    QCOMPARE(m_action->m_delay, 0);
    EXPECT_LOG(2, {"2 [Action.cpp] Task Light IsDelayed but still valid (accumulated delay: 60 s, tolerated delay: "
                   "300 s)"});
}

void ActionStartTest::AnActionDeletesItsTask()
{
    QCOMPARE(FakeTask::Living().size(), 1);
    m_action.reset();
    QCOMPARE(FakeTask::Living().size(), 0);
}

OZNA_CASE(ActionStart, ActionStartTest)
#include "tst_ActionStart.moc"

#include "Action.h"
#include "ActionLine.h"
#include "Rows.h"
#include "SchedulerTest.h"
#include "Suite.h"
#include "tasks/RequestPddAction.h"

#include <QSignalSpy>

using namespace Qt::StringLiterals;

class RequestPddActionTest final : public SchedulerTest
{
    Q_OBJECT
private Q_SLOTS:
    void ASupportedActionIsAnnounced();
    void AnUnsupportedActionIsNotAnnounced();
    void AnActionCarriesTheSignalOn();
    void TheSchedulerCarriesTheSignalOn_data();
    void TheSchedulerCarriesTheSignalOn();
};

void RequestPddActionTest::ASupportedActionIsAnnounced()
{
    for (const auto& [enable, on] : {std::pair(u"1"_s, true), {u"0"_s, false}, {u"2"_s, false}, {u"yes"_s, false}})
    {
        RequestPddAction task(u"1"_s, enable);
        LogRecorder::Clear();
        const QSignalSpy announced(&task, &RequestPddAction::PddAction);
        for (int day = 1; day <= 2; ++day)
        {
            QVERIFY(task.Run());
            QCOMPARE(announced.size(), day);
            QCOMPARE(announced.last()[0].value<PDD_ACTION>(), STREAM_MIC);
            QCOMPARE(announced.last()[1], QVariant(on));
            QCOMPARE(task.IsRunning(), false);
        }
        EXPECT_LOG(9, {});
        EXPECT_REQUESTS(Bus(), {});
    }
}

void RequestPddActionTest::AnUnsupportedActionIsNotAnnounced()
{
    for (const QString& action : {u"0"_s, u"2"_s, u"-1"_s, u"mic"_s})
    {
        RequestPddAction task(action, u"1"_s);
        LogRecorder::Clear();
        const QSignalSpy announced(&task, &RequestPddAction::PddAction);
        QVERIFY(task.Run());
        EXPECT_LOG(9, {"2 [tasks/RequestPddAction.cpp] Unsupported action '0'"});
        QCOMPARE(announced.size(), 0);
        EXPECT_REQUESTS(Bus(), {});
    }
}

void RequestPddActionTest::AnActionCarriesTheSignalOn()
{
    Action action(ActionLine{.task = u"19|1,1"_s}.Text());
    const QSignalSpy forwarded(&action, &Action::PddActionRequested);
    action.Start();
    QCOMPARE(forwarded.size(), 1);
    QCOMPARE(forwarded[0][0].value<PDD_ACTION>(), STREAM_MIC);
    QCOMPARE(forwarded[0][1], QVariant(true));
}

void RequestPddActionTest::TheSchedulerCarriesTheSignalOn_data()
{
    Rows<QByteArray, QList<QVariantList>, LogLines>::Add({
        {"on", "1,1", {{1U, true}}, {"4 [Scheduler.cpp] >>> Requesting PDD Action: action=STREAM_MIC, enable=1"}},
        {"off", "1,0", {{1U, false}}, {"4 [Scheduler.cpp] >>> Requesting PDD Action: action=STREAM_MIC, enable=0"}},
        {"unsupported", "2,1", {}, {"2 [tasks/RequestPddAction.cpp] Unsupported action '0'"}},
    });
}

void RequestPddActionTest::TheSchedulerCarriesTheSignalOn()
{
    const auto& [parameters, announced, log] = Rows<QByteArray, QList<QVariantList>, LogLines>::Current();
    StartWith({"1111111|12:00:10|*|*|*|||19|" + parameters});
    const QSignalSpy expected(&Engine(), &Scheduler::ExpectedPddAction);
    CheckFar();
    Time().SetLocal(QTime(12, 0, 10));
    LogRecorder::Clear();
    // Within the pass: no event loop is needed.
    CheckEarly();
    QCOMPARE(QList<QVariantList>(expected), announced);
    EXPECT_LOG(4, (LogLines{"4 [Scheduler.cpp] READY action found: 19 (RequestPddAction)"} + log));
    EXPECT_REQUESTS(Bus(), {});
}

OZNA_CASE(RequestPddAction, RequestPddActionTest)
#include "tst_RequestPddAction.moc"

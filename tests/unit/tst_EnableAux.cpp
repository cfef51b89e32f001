#include "PeerAnswers.h"
#include "Rows.h"
#include "Suite.h"
#include "UnitTest.h"
#include "tasks/EnableAux.h"

using namespace Qt::StringLiterals;

class EnableAuxTest final : public UnitTest
{
    Q_OBJECT
private Q_SLOTS:
    void TheInputIsSwitchedOffWithARunningTask_data() { PeerAnswers::AddRows(); }
    void TheInputIsSwitchedOffWithARunningTask();
    void OtherTasksLeaveTheInputAlone_data();
    void OtherTasksLeaveTheInputAlone();
};

void EnableAuxTest::TheInputIsSwitchedOffWithARunningTask()
{
    QFETCH(PeerAnswer, answer);
    Bus().Answer("StopPlay", [&answer](const PeerRequest&) { return answer.reply; });
    {
        EnableAux task(u"1"_s);
        task.m_running = true;
        LogRecorder::Clear();
    }
    EXPECT_REQUESTS(Bus(), {u"sound.StopPlay ss aux "_s});
    LogLines log{"4 [tasks/EnableAux.cpp] Scheduled Aux enabled running: stop it"};
    if (!answer.IsAccepted())
        log.append("2 [tasks/EnableAux.cpp] Impossible to disable scheduled aux");
    EXPECT_LOG(9, (log));
}

void EnableAuxTest::OtherTasksLeaveTheInputAlone_data()
{
    Rows<QString, bool, bool>::Add({
        {"on, never run", u"1"_s, false, false},
        {"on, run but not marked", u"1"_s, true, false},
        {"off, never run", u"0"_s, false, false},
        {"off, marked as running", u"0"_s, true, true},
    });
}

void EnableAuxTest::OtherTasksLeaveTheInputAlone()
{
    const auto& [parameter, hasRun, running] = Rows<QString, bool, bool>::Current();
    {
        EnableAux task(parameter);
        if (hasRun)
            QVERIFY(task.Run());
        QCOMPARE(task.IsRunning(), false);
        task.m_running = running;
        LogRecorder::Clear();
        Bus().Clear();
    }
    EXPECT_REQUESTS(Bus(), {});
    EXPECT_LOG(9, {});
}

OZNA_CASE(EnableAux, EnableAuxTest)
#include "tst_EnableAux.moc"

#include "PeerAnswers.h"
#include "Suite.h"
#include "UnitTest.h"
#include "tasks/EnableAux.h"

using namespace Qt::StringLiterals;

class EnableAuxTest final : public UnitTest
{
    Q_OBJECT
private Q_SLOTS:
    void AParameterIsReadAtCreation_data();
    void AParameterIsReadAtCreation();
    void TheInputIsSwitchedOffWithARunningTask_data() { PeerAnswers::AddRows(); }
    void TheInputIsSwitchedOffWithARunningTask();
    void OtherTasksLeaveTheInputAlone_data();
    void OtherTasksLeaveTheInputAlone();
};

void EnableAuxTest::AParameterIsReadAtCreation_data()
{
    QTest::addColumn<QString>("parameter");
    QTest::addColumn<bool>("on");
    QTest::addColumn<bool>("isNumber");
    const auto row = [](const char* parameter, bool on, bool isNumber = true) {
        QTest::addRow("\"%s\"", parameter) << QString::fromUtf8(parameter) << on << isNumber;
    };
    row("1", true);
    row("+1", true);
    row("01", true);
    for (const char* const text : {"0", "2", "-1", "11", "2147483647"})
        row(text, false);
    for (const char* const text : {"", "true", "on", "1.0", "0x1", "4294967297", "%n"})
        row(text, false, false);
}

void EnableAuxTest::AParameterIsReadAtCreation()
{
    QFETCH(QString, parameter);
    QFETCH(bool, on);
    QFETCH(bool, isNumber);
    const EnableAux task(parameter);
    LogLines log;
    if (!isNumber)
        log.append("2 [tasks/EnableAux.cpp] Can't parse EnableAux enable from parameters: '" + parameter.toUtf8() +
                   "'. Using enable=FALSE.");
    log.append(on ? "4 [tasks/EnableAux.cpp] TASK CREATED | EnableAux(1)"
                  : "4 [tasks/EnableAux.cpp] TASK CREATED | EnableAux(0)");
    EXPECT_LOG(9, (log));
    EXPECT_REQUESTS(Bus(), {});
    QCOMPARE(task.m_type, TASK_ENABLE_AUX);
    QCOMPARE(task.m_identifier, QString());
    QCOMPARE(task.GetDelayable_s(), 0U);
}

void EnableAuxTest::TheInputIsSwitchedOffWithARunningTask()
{
    QFETCH(PeerAnswer, answer);
    Bus().Answer("StopPlay", [&answer](const PeerRequest&) { return answer.reply; });
    {
        EnableAux task(u"1"_s);
        task.m_running = true;
        LogRecorder::Clear();
    }
    EXPECT_REQUESTS(Bus(), {u"soundmanager StopPlay(s:aux, s:)"_s});
    LogLines log{"4 [tasks/EnableAux.cpp] Scheduled Aux enabled running: stop it"};
    if (!answer.IsAccepted())
        log.append("2 [tasks/EnableAux.cpp] Impossible to disable scheduled aux");
    EXPECT_LOG(9, (log));
}

void EnableAuxTest::OtherTasksLeaveTheInputAlone_data()
{
    QTest::addColumn<QString>("parameter");
    QTest::addColumn<bool>("hasRun");
    QTest::addColumn<bool>("running");
    QTest::newRow("on, never run") << u"1"_s << false << false;
    QTest::newRow("on, run but not marked") << u"1"_s << true << false;
    QTest::newRow("off, never run") << u"0"_s << false << false;
    QTest::newRow("off, marked as running") << u"0"_s << true << true;
}

void EnableAuxTest::OtherTasksLeaveTheInputAlone()
{
    QFETCH(QString, parameter);
    QFETCH(bool, hasRun);
    QFETCH(bool, running);
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

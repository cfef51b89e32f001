#include "PeerAnswers.h"
#include "Rows.h"
#include "Suite.h"
#include "UnitTest.h"
#include "tasks/EnableAux.h"
#include "tasks/PlayRadioFm.h"

using namespace Qt::StringLiterals;

// The radio and the auxiliary input, which play until they are switched off.
class SourcesTest final : public UnitTest
{
    Q_OBJECT
private Q_SLOTS:
    void TuningIsJudgedByItsStatusAlone_data() { PeerAnswers::AddRows(); }
    void TuningIsJudgedByItsStatusAlone();
    void ASourceIsSwitchedOffWithARunningTask_data() { PeerAnswers::AddRows(); }
    void ASourceIsSwitchedOffWithARunningTask();
    void OtherTasksLeaveTheSourceAlone_data();
    void OtherTasksLeaveTheSourceAlone();

private:
    static std::unique_ptr<Task> Make(bool isRadio, const QString& parameter);
};

std::unique_ptr<Task> SourcesTest::Make(bool isRadio, const QString& parameter)
{
    if (isRadio)
        return std::make_unique<PlayRadioFm>(parameter);
    return std::make_unique<EnableAux>(parameter);
}

void SourcesTest::TuningIsJudgedByItsStatusAlone()
{
    QFETCH(PeerAnswer, answer);
    const PlayRadioFm task(u"98.5"_s);
    LogRecorder::Clear();
    Bus().Answer("RadioFmSetFrequency", [&answer](const PeerRequest&) { return answer.reply; });
    QCOMPARE(task.SetFrequency(), answer.status == 0);
    const Request request = Request::Find("RadioFmSetFrequency", "98.5");
    QCOMPARE(Bus().Requests().value(0).Shown(), request.Call());
    EXPECT_LOG(9, (ToLines(answer.Filled(request.Records(answer.TakenAs(Judged::STATUS))))));
}

void SourcesTest::ASourceIsSwitchedOffWithARunningTask()
{
    QFETCH(PeerAnswer, answer);
    Bus().Answer("StopPlay", [&answer](const PeerRequest&) { return answer.reply; });
    struct Source
    {
        bool isRadio;
        const char* parameter;
        const char* request;
        const char* stopping;
        const char* failed;
    };
    for (const Source& source :
         {Source{true, "98.5", "sound.StopPlay ss radiofm ",
                 "4 [tasks/PlayRadioFm.cpp] Scheduled Radio 98.50 running: stop it",
                 "2 [tasks/PlayRadioFm.cpp] Impossible to stop scheduled radiofm"},
          Source{false, "1", "sound.StopPlay ss aux ", "4 [tasks/EnableAux.cpp] Scheduled Aux enabled running: stop it",
                 "2 [tasks/EnableAux.cpp] Impossible to disable scheduled aux"}})
    {
        std::unique_ptr<Task> task = Make(source.isRadio, QString::fromLatin1(source.parameter));
        task->m_running = true;
        LogRecorder::Clear();
        task.reset();
        EXPECT_REQUESTS(Bus(), {QString::fromLatin1(source.request)});
        EXPECT_LOG(9, (LogLines{source.stopping} + LogLines(answer.IsAccepted() ? 0 : 1, source.failed)));
    }
}

void SourcesTest::OtherTasksLeaveTheSourceAlone_data()
{
    Rows<bool, QString, bool, bool>::Add({
        {"radio on, run but not marked", true, u"98.5"_s, true, false},
        {"radio off, run", true, u"0"_s, true, false},
        {"input on, never run", false, u"1"_s, false, false},
        {"input on, run but not marked", false, u"1"_s, true, false},
        {"input off, never run", false, u"0"_s, false, false},
        {"input off, marked as running", false, u"0"_s, true, true},
    });
}

void SourcesTest::OtherTasksLeaveTheSourceAlone()
{
    const auto& [isRadio, parameter, hasRun, running] = Rows<bool, QString, bool, bool>::Current();
    std::unique_ptr<Task> task = Make(isRadio, parameter);
    if (hasRun)
        QVERIFY(task->Run());
    QCOMPARE(task->IsRunning(), false);
    task->m_running = running;
    LogRecorder::Clear();
    Bus().Clear();
    task.reset();
    EXPECT_REQUESTS(Bus(), {});
    EXPECT_LOG(9, {});
}

OZNA_CASE(Sources, SourcesTest)
#include "tst_Sources.moc"

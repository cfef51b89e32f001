#include "PeerAnswers.h"
#include "Scheduler.h"
#include "Suite.h"
#include "UnitTest.h"
#include "tasks/PlayRadioFm.h"

#include <SoundManagerProxy.h>

using namespace Qt::StringLiterals;

class PlayRadioFmTest final : public UnitTest
{
    Q_OBJECT
private Q_SLOTS:
    void TuningIsJudgedByItsStatusAlone_data() { PeerAnswers::AddRows(); }
    void TuningIsJudgedByItsStatusAlone();
    void AnyEarlierTimeoutComesBack_data() { PeerAnswers::AddRows(); }
    void AnyEarlierTimeoutComesBack();
    void TheRadioIsSwitchedOffWithARunningTask_data() { PeerAnswers::AddRows(); }
    void TheRadioIsSwitchedOffWithARunningTask();
    void OtherTasksLeaveTheRadioAlone();

private:
    void End() override { Scheduler::m_soundManProxy->setTimeout(SOUND_TIMEOUT_MS); }
};

void PlayRadioFmTest::TuningIsJudgedByItsStatusAlone()
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

void PlayRadioFmTest::AnyEarlierTimeoutComesBack()
{
    QFETCH(PeerAnswer, answer);
    Bus().Answer("PlayRadioFm", [&answer](const PeerRequest&) { return answer.reply; });
    PlayRadioFm task(u"98.5"_s);
    for (const int earlier_ms : {-1, 1, 25000})
    {
        Scheduler::m_soundManProxy->setTimeout(earlier_ms);
        QCOMPARE(task.Run(), answer.IsAccepted());
        QCOMPARE(Scheduler::m_soundManProxy->timeout(), earlier_ms);
    }
    LogRecorder::Clear();
}

void PlayRadioFmTest::TheRadioIsSwitchedOffWithARunningTask()
{
    QFETCH(PeerAnswer, answer);
    Bus().Answer("StopPlay", [&answer](const PeerRequest&) { return answer.reply; });
    {
        PlayRadioFm task(u"98.5"_s);
        task.m_running = true;
        LogRecorder::Clear();
    }
    EXPECT_REQUESTS(Bus(), {u"sound.StopPlay ss radiofm "_s});
    LogLines log{"4 [tasks/PlayRadioFm.cpp] Scheduled Radio 98.50 running: stop it"};
    if (!answer.IsAccepted())
        log.append("2 [tasks/PlayRadioFm.cpp] Impossible to stop scheduled radiofm");
    EXPECT_LOG(9, (log));
}

void PlayRadioFmTest::OtherTasksLeaveTheRadioAlone()
{
    for (const QString& parameter : {u"98.5"_s, u"0"_s})
    {
        {
            PlayRadioFm task(parameter);
            QVERIFY(task.Run());
            LogRecorder::Clear();
            Bus().Clear();
        }
        EXPECT_REQUESTS(Bus(), {});
        EXPECT_LOG(9, {});
    }
}

OZNA_CASE(PlayRadioFm, PlayRadioFmTest)
#include "tst_PlayRadioFm.moc"

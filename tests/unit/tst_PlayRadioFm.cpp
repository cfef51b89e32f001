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
    void AFrequencyIsReadAtCreation_data();
    void AFrequencyIsReadAtCreation();
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

void PlayRadioFmTest::AFrequencyIsReadAtCreation_data()
{
    QTest::addColumn<QString>("parameter");
    QTest::addColumn<QByteArray>("shown");
    QTest::addColumn<bool>("isNumber");
    const auto row = [](const char* parameter, const char* shown, bool isNumber = true) {
        QTest::addRow("\"%s\"", parameter) << QString::fromUtf8(parameter) << QByteArray(shown) << isNumber;
    };
    row("98.5", "98.50");
    row("0", "0.00");
    row("0.00", "0.00");
    row("-0.0", "-0.00");
    row("87.504", "87.50");
    row("87.506", "87.51");
    row("0.001", "0.00");
    row("-98.5", "-98.50");
    row("1e2", "100.00");
    row(".5", "0.50");
    row("108", "108.00");
    for (const char* const text : {"", "abc", "98,5", "98.5 MHz", "98.5.1", "0x62", "1e400", "%f"})
        row(text, "0.00", false);
}

void PlayRadioFmTest::AFrequencyIsReadAtCreation()
{
    QFETCH(QString, parameter);
    QFETCH(QByteArray, shown);
    QFETCH(bool, isNumber);
    const PlayRadioFm task(parameter);
    LogLines log;
    if (!isNumber)
        log.append("2 [tasks/PlayRadioFm.cpp] Can't parse RadioFm frequency from parameters: '" + parameter.toUtf8() +
                   "'. Using 0.");
    log.append("4 [tasks/PlayRadioFm.cpp] TASK CREATED | PlayRadioFm: " + shown);
    EXPECT_LOG(9, (log));
    EXPECT_REQUESTS(Bus(), {});
    QCOMPARE(task.m_type, TASK_PLAY_RADIO_FM);
    QCOMPARE(task.m_identifier, QString());
    QCOMPARE(task.GetDelayable_s(), 0U);
}

void PlayRadioFmTest::TuningIsJudgedByItsStatusAlone()
{
    QFETCH(PeerAnswer, answer);
    const PlayRadioFm task(u"98.5"_s);
    LogRecorder::Clear();
    Bus().Answer("RadioFmSetFrequency", [&answer](const PeerRequest&) { return answer.reply; });
    QCOMPARE(task.SetFrequency(), answer.status == 0);
    const Request request = Request::Find("RadioFmSetFrequency", "98.5");
    QCOMPARE(Bus().Requests().value(0).OnBus(), request.Call());
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
    EXPECT_REQUESTS(Bus(), {u"soundmanager StopPlay(s:radiofm, s:)"_s});
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

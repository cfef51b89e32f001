#include "OneRequest.h"
#include "PeerAnswers.h"
#include "Scheduler.h"
#include "Suite.h"
#include "UnitTest.h"
#include "tasks/PlayRadioFm.h"

#include <SoundManagerProxy.h>

using namespace Qt::StringLiterals;

namespace
{

constexpr int SOUND_TIMEOUT_MS = 3000;
constexpr int SWITCH_ON_TIMEOUT_MS = 20000;

LogLine Requesting(const char* call)
{
    return {9, QByteArray("[tasks/PlayRadioFm.cpp] Requesting SoundManager()->") + call};
}

void AddAnswers()
{
    QTest::addColumn<PeerAnswer>("answer");
    for (const PeerAnswer& answer : PeerAnswers::All())
        QTest::newRow(answer.name) << answer;
}

} // namespace

class PlayRadioFmTest final : public UnitTest
{
    Q_OBJECT
private Q_SLOTS:
    void AFrequencyIsReadAtCreation_data();
    void AFrequencyIsReadAtCreation();
    void TheFrequency0SwitchesTheRadioOff_data();
    void TheFrequency0SwitchesTheRadioOff();
    void TheRadioIsSwitchedOnWithPatience_data() { AddAnswers(); }
    void TheRadioIsSwitchedOnWithPatience();
    void TheRadioIsTunedOnceItIsOn_data();
    void TheRadioIsTunedOnceItIsOn();
    void TuningIsJudgedByItsStatusAlone_data() { AddAnswers(); }
    void TuningIsJudgedByItsStatusAlone();
    void ARadioOutOfTuneCountsAsAccepted_data() { AddAnswers(); }
    void ARadioOutOfTuneCountsAsAccepted();
    void AnyEarlierTimeoutComesBack_data() { AddAnswers(); }
    void AnyEarlierTimeoutComesBack();
    void TheRadioIsSwitchedOffWithARunningTask_data() { AddAnswers(); }
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
        log.append({2, "[tasks/PlayRadioFm.cpp] Can't parse RadioFm frequency from parameters: '" + parameter.toUtf8() +
                           "'. Using 0."});
    log.append({4, "[tasks/PlayRadioFm.cpp] TASK CREATED | PlayRadioFm: " + shown});
    EXPECT_LOG(9, (log));
    EXPECT_REQUESTS(Bus(), {});
    QCOMPARE(task.m_type, TASK_PLAY_RADIO_FM);
    QCOMPARE(task.m_identifier, QString());
    QCOMPARE(task.GetDelayable_s(), 0U);
}

void PlayRadioFmTest::TheFrequency0SwitchesTheRadioOff_data()
{
    QList<OneRequest> requests;
    for (const char* const parameter : {"0", "0.00", "-0.0", "abc", ""})
        requests.append({parameter,
                         [text = QString::fromLatin1(parameter)] { return std::make_unique<PlayRadioFm>(text); },
                         {},
                         u"soundmanager StopPlay(s:radiofm, s:)"_s,
                         SOUND_TIMEOUT_MS,
                         {},
                         {4, "[tasks/PlayRadioFm.cpp] StopPlay('radiofm') error: {status}\n"},
                         {4, "[tasks/PlayRadioFm.cpp] TASK REQUESTED | PlayRadioFm(radiofm): 0 (stop)"}});
    OneRequestRows::Add(requests);
}

void PlayRadioFmTest::TheFrequency0SwitchesTheRadioOff()
{
    OneRequestRows::Check(Bus());
}

void PlayRadioFmTest::TheRadioIsSwitchedOnWithPatience()
{
    QFETCH(PeerAnswer, answer);
    PlayRadioFm task(u"98.5"_s);
    LogRecorder::Clear();
    int timeoutInCall_ms = 0;
    Bus().Answer("PlayRadioFm", [&](const PeerRequest&) {
        timeoutInCall_ms = Scheduler::m_soundManProxy->timeout();
        return answer.reply;
    });
    QCOMPARE(task.Run(), answer.IsAccepted());
    QCOMPARE(timeoutInCall_ms, SWITCH_ON_TIMEOUT_MS);
    QCOMPARE(Scheduler::m_soundManProxy->timeout(), SOUND_TIMEOUT_MS);
    QCOMPARE(task.IsRunning(), false);

    LogLines log{Requesting("PlayRadioFm()")};
    if (answer.isBusError)
        log.append({4, "[tasks/PlayRadioFm.cpp] PlayRadioFm() request error: " + answer.error});
    else if (answer.status != 0)
        log.append({1, answer.Filled("[tasks/PlayRadioFm.cpp] PlayRadioFm() error: {status}\n")});
    else
        log += {{9, "[tasks/PlayRadioFm.cpp] TASK REQUESTED | PlayRadioFm: enable radio. Now set frequency..."},
                Requesting("RadioFmSetFrequency(98.50)"),
                {9, "[tasks/PlayRadioFm.cpp] TASK REQUESTED | PlayRadioFm/SetFrequency: 98.50"}};
    EXPECT_LOG(9, (log));
    QStringList requests{u"soundmanager PlayRadioFm()"_s};
    if (answer.IsAccepted())
        requests.append(u"soundmanager RadioFmSetFrequency(d:98.5)"_s);
    EXPECT_REQUESTS(Bus(), (requests));
}

void PlayRadioFmTest::TheRadioIsTunedOnceItIsOn_data()
{
    QTest::addColumn<QString>("parameter");
    QTest::addColumn<QString>("sent");
    for (const QString& number : {u"98.5"_s, u"108"_s, u"87.504"_s, u"0.001"_s, u"-98.5"_s})
        QTest::newRow(qPrintable(number)) << number << number;
    QTest::newRow("1e2") << u"1e2"_s << u"100"_s;
}

void PlayRadioFmTest::TheRadioIsTunedOnceItIsOn()
{
    QFETCH(QString, parameter);
    QFETCH(QString, sent);
    PlayRadioFm task(parameter);
    for (int day = 0; day < 2; ++day)
    {
        QVERIFY(task.Run());
        QCOMPARE(Bus().Requests().size(), 2);
        QCOMPARE(Bus().Requests()[0].timeout_ms, SWITCH_ON_TIMEOUT_MS);
        QCOMPARE(Bus().Requests()[1].timeout_ms, SOUND_TIMEOUT_MS);
        EXPECT_REQUESTS(Bus(),
                        {u"soundmanager PlayRadioFm()"_s, u"soundmanager RadioFmSetFrequency(d:%1)"_s.arg(sent)});
    }
}

void PlayRadioFmTest::TuningIsJudgedByItsStatusAlone()
{
    QFETCH(PeerAnswer, answer);
    const PlayRadioFm task(u"98.5"_s);
    LogRecorder::Clear();
    Bus().Answer("RadioFmSetFrequency", [&answer](const PeerRequest&) { return answer.reply; });
    QCOMPARE(task.SetFrequency(), answer.status == 0);
    EXPECT_REQUESTS(Bus(), {u"soundmanager RadioFmSetFrequency(d:98.5)"_s});
    const LogLine tuned(9, "[tasks/PlayRadioFm.cpp] TASK REQUESTED | PlayRadioFm/SetFrequency: 98.50");
    const LogLine refused(1, answer.Filled("[tasks/PlayRadioFm.cpp] RadioFmSetFrequency(98.50) error: {status}\n"));
    EXPECT_LOG(9, {Requesting("RadioFmSetFrequency(98.50)"), answer.status == 0 ? tuned : refused});
}

void PlayRadioFmTest::ARadioOutOfTuneCountsAsAccepted()
{
    QFETCH(PeerAnswer, answer);
    Bus().Answer("RadioFmSetFrequency", [&answer](const PeerRequest&) { return answer.reply; });
    PlayRadioFm task(u"98.5"_s);
    QVERIFY(task.Run());
    QCOMPARE(Bus().Requests().size(), 2);
    LogRecorder::Clear();
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
    LogLines log{{4, "[tasks/PlayRadioFm.cpp] Scheduled Radio 98.50 running: stop it"}};
    if (!answer.IsAccepted())
        log.append({2, "[tasks/PlayRadioFm.cpp] Impossible to stop scheduled radiofm"});
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

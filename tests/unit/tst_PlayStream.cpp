#include "PeerAnswers.h"
#include "Scheduler.h"
#include "Suite.h"
#include "UnitTest.h"
#include "tasks/PlayStream.h"

#include <SoundManagerProxy.h>

#include <QFile>
#include <QSignalSpy>

#include <optional>

using namespace Qt::StringLiterals;

namespace
{

constexpr int SOUND_TIMEOUT_MS = 3000;

void AddAnswers()
{
    QTest::addColumn<PeerAnswer>("answer");
    for (const PeerAnswer& answer : PeerAnswers::All())
        QTest::newRow(answer.name) << answer;
}

} // namespace

class PlayStreamTest final : public UnitTest
{
    Q_OBJECT
private Q_SLOTS:
    void AParameterIsReadAtCreation_data();
    void AParameterIsReadAtCreation();
    void ARequestCarriesTheParameters_data();
    void ARequestCarriesTheParameters();
    void TheAnswerDecides_data() { AddAnswers(); }
    void TheAnswerDecides();
    void TheVolumesAnswerIsIgnored_data() { AddAnswers(); }
    void TheVolumesAnswerIsIgnored();
    void TheTaskRunsUntilStreamingHasEnded();
    void WithoutAPlaybackNoEndIsHeard();
    void ARunningStreamIsStoppedWithItsTask_data() { AddAnswers(); }
    void ARunningStreamIsStoppedWithItsTask();
    void AnotherStreamIsLeftAlone_data();
    void AnotherStreamIsLeftAlone();

private:
    void Begin() override;
    void End() override;

    // Makes the task, and forgets what that logs.
    PlayStream& Make(const QString& volume = u"-1"_s);

    std::optional<PlayStream> m_task;
};

void PlayStreamTest::Begin()
{
    QFile file(Data().Path() + u"/ozna.ini"_s);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QVERIFY(file.write("[GENERAL]\nServerIp=10.0.0.5\n") > 0);
    qputenv("OZNA_CONFIG_FILE", QFile::encodeName(file.fileName()));
}

void PlayStreamTest::End()
{
    m_task.reset();
    qunsetenv("OZNA_CONFIG_FILE");
}

PlayStream& PlayStreamTest::Make(const QString& volume)
{
    m_task.emplace(u"8554/live"_s, volume);
    LogRecorder::Clear();
    return *m_task;
}

void PlayStreamTest::AParameterIsReadAtCreation_data()
{
    QTest::addColumn<QString>("portAndPath");
    QTest::addColumn<QString>("volume");
    QTest::addColumn<LogLines>("log");
    const auto row = [](const char* portAndPath, const char* volume, const char* shown, bool isNumber = true) {
        LogLines log;
        if (!isNumber)
            log.append({2, "[tasks/PlayStream.cpp] Invalid volume=" + QByteArray(volume) + ", not used"});
        log.append({4, "[tasks/PlayStream.cpp] TASK CREATED | PlayStream: portAndPath=" + QByteArray(portAndPath) +
                           " (vol=" + shown + ")"});
        QTest::addRow("\"%s\", volume \"%s\"", portAndPath, volume)
            << QString::fromUtf8(portAndPath) << QString::fromLatin1(volume) << log;
    };
    row("8554/live", "70", "70");
    row("8554/live", "0", "0");
    row("8554/live", "-1", "-1");
    row("8554/live", "-5", "-5");
    for (const char* const volume : {"", "loud", "7.5", "0x10", "2147483648"})
        row("8554/live", volume, "-1", false);
    row("", "70", "70");
    row("%s/No\xc3\xabl", "70", "70");
}

void PlayStreamTest::AParameterIsReadAtCreation()
{
    QFETCH(QString, portAndPath);
    QFETCH(QString, volume);
    QFETCH(LogLines, log);
    const PlayStream task(portAndPath, volume);
    EXPECT_LOG(9, (log));
    EXPECT_REQUESTS(Bus(), {});
    QCOMPARE(task.m_type, TASK_PLAY_STREAM);
    QCOMPARE(task.m_identifier, QString());
    QCOMPARE(task.GetDelayable_s(), 0U);
    QCOMPARE(task.IsRunning(), false);
}

void PlayStreamTest::ARequestCarriesTheParameters_data()
{
    QTest::addColumn<QString>("volume");
    QTest::addColumn<QStringList>("requests");
    QTest::addColumn<QByteArray>("shown");
    const QString play = u"soundmanager PlayStream(s:rtsp://10.0.0.5:8554/live, u:0)"_s;
    for (const QString& volume : {u"70"_s, u"0"_s})
        QTest::addRow("volume %s", qPrintable(volume))
            << volume << QStringList{u"soundmanager SetPlayerVolume(s:stream, d:%1)"_s.arg(volume), play}
            << volume.toLatin1();
    QTest::newRow("volume -1 is left alone") << u"-1"_s << QStringList{play} << "-1"_ba;
    QTest::newRow("volume -5 is left alone") << u"-5"_s << QStringList{play} << "-5"_ba;
    QTest::newRow("a volume that is no number is left alone") << u"loud"_s << QStringList{play} << "-1"_ba;
}

void PlayStreamTest::ARequestCarriesTheParameters()
{
    QFETCH(QString, volume);
    QFETCH(QStringList, requests);
    QFETCH(QByteArray, shown);
    PlayStream& task = Make(volume);
    QVERIFY(task.Run());
    for (const PeerRequest& request : Bus().Requests())
        QCOMPARE(request.timeout_ms, SOUND_TIMEOUT_MS);
    EXPECT_REQUESTS(Bus(), (requests));
    EXPECT_LOG(9,
               {{5, "[tasks/PlayStream.cpp] PlayStream setup done: uri=rtsp://10.0.0.5:8554/live"},
                {9, "[tasks/PlayStream.cpp] TASK START REQUESTED | PlayStream: rtsp://10.0.0.5:8554/live|" + shown}});
}

void PlayStreamTest::TheAnswerDecides()
{
    QFETCH(PeerAnswer, answer);
    PlayStream& task = Make();
    bool runningInCall = false;
    Bus().Answer("PlayStream", [&](const PeerRequest&) {
        runningInCall = task.IsRunning();
        return answer.reply;
    });
    QCOMPARE(task.Run(), answer.IsAccepted());
    QVERIFY(runningInCall);
    QCOMPARE(task.IsRunning(), answer.IsAccepted());
    LogLines log{{5, "[tasks/PlayStream.cpp] PlayStream setup done: uri=rtsp://10.0.0.5:8554/live"}};
    if (answer.isBusError)
        log.append({1, "[tasks/PlayStream.cpp] PlayStream request error: " + answer.error + "\n"});
    else if (answer.status != 0)
        log.append({1, answer.Filled("[tasks/PlayStream.cpp] PlayStream error: {status}\n")});
    else
        log.append({9, "[tasks/PlayStream.cpp] TASK START REQUESTED | PlayStream: rtsp://10.0.0.5:8554/live|-1"});
    EXPECT_LOG(9, (log));
}

void PlayStreamTest::TheVolumesAnswerIsIgnored()
{
    QFETCH(PeerAnswer, answer);
    PlayStream& task = Make(u"70"_s);
    bool runningInCall = false;
    Bus().Answer("SetPlayerVolume", [&](const PeerRequest&) {
        runningInCall = task.IsRunning();
        return answer.reply;
    });
    QVERIFY(task.Run());
    QVERIFY(runningInCall);
    QCOMPARE(Bus().Requests().size(), 2);
    EXPECT_LOG(5, {{5, "[tasks/PlayStream.cpp] PlayStream setup done: uri=rtsp://10.0.0.5:8554/live"}});
}

void PlayStreamTest::TheTaskRunsUntilStreamingHasEnded()
{
    PlayStream& task = Make();
    const QSignalSpy completed(&task, &PlayStream::TaskCompleted);
    for (int day = 1; day <= 2; ++day)
    {
        QVERIFY(task.Run());
        LogRecorder::Clear();
        Q_EMIT Scheduler::m_soundManProxy->StreamEnabled(true);
        Q_EMIT Scheduler::m_soundManProxy->PlayFileCompleted(u"x"_s);
        Q_EMIT Scheduler::m_soundManProxy->PlayPlaylistCompleted(u"x"_s);
        EXPECT_LOG(9, {});
        QVERIFY(task.IsRunning());
        QCOMPARE(completed.size(), day - 1);
        Q_EMIT Scheduler::m_soundManProxy->StreamEnabled(false);
        EXPECT_LOG(9, {{4, "[tasks/PlayStream.cpp] TASK COMPLETED | PlayStream: rtsp://10.0.0.5:8554/live"}});
        QVERIFY(!task.IsRunning());
        QCOMPARE(completed.size(), day);
        // A further one is somebody else's.
        Q_EMIT Scheduler::m_soundManProxy->StreamEnabled(false);
        EXPECT_LOG(9, {});
        QCOMPARE(completed.size(), day);
    }
}

void PlayStreamTest::WithoutAPlaybackNoEndIsHeard()
{
    PlayStream& task = Make();
    const QSignalSpy completed(&task, &PlayStream::TaskCompleted);
    Q_EMIT Scheduler::m_soundManProxy->StreamEnabled(false);
    Bus().Answer("PlayStream", 5);
    QVERIFY(!task.Run());
    LogRecorder::Clear();
    Q_EMIT Scheduler::m_soundManProxy->StreamEnabled(false);
    EXPECT_LOG(9, {});
    QCOMPARE(completed.size(), 0);
}

void PlayStreamTest::ARunningStreamIsStoppedWithItsTask()
{
    QFETCH(PeerAnswer, answer);
    QVERIFY(Make().Run());
    Bus().Clear();
    LogRecorder::Clear();
    Bus().Answer("StopPlay", [&answer](const PeerRequest&) { return answer.reply; });
    m_task.reset();
    EXPECT_REQUESTS(Bus(), {u"soundmanager StopPlay(s:stream, s:)"_s});
    LogLines log{{4, "[tasks/PlayStream.cpp] Scheduled Stream rtsp://10.0.0.5:8554/live running: stop it"}};
    if (!answer.IsAccepted())
        log.append({2, "[tasks/PlayStream.cpp] Impossible to stop scheduled stream"});
    EXPECT_LOG(9, (log));
}

void PlayStreamTest::AnotherStreamIsLeftAlone_data()
{
    QTest::addColumn<bool>("run");
    QTest::addColumn<int>("status");
    QTest::newRow("never run") << false << 0;
    QTest::newRow("refused") << true << 5;
    QTest::newRow("played to its end") << true << 0;
}

void PlayStreamTest::AnotherStreamIsLeftAlone()
{
    QFETCH(bool, run);
    QFETCH(int, status);
    PlayStream& task = Make();
    Bus().Answer("PlayStream", status);
    if (run)
        QCOMPARE(task.Run(), status == 0);
    Q_EMIT Scheduler::m_soundManProxy->StreamEnabled(false);
    LogRecorder::Clear();
    Bus().Clear();
    m_task.reset();
    EXPECT_REQUESTS(Bus(), {});
    EXPECT_LOG(9, {});
}

OZNA_CASE(PlayStream, PlayStreamTest)
#include "tst_PlayStream.moc"

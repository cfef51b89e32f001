#include "Request.h"
#include "Rows.h"
#include "Scheduler.h"
#include "Suite.h"
#include "UnitTest.h"
#include "tasks/PlayStream.h"

#include <SoundManagerProxy.h>

#include <QFile>
#include <QSignalSpy>

#include <optional>

using namespace Qt::StringLiterals;

class PlayStreamTest final : public UnitTest
{
    Q_OBJECT
private Q_SLOTS:
    void AParameterIsReadAtCreation_data();
    void AParameterIsReadAtCreation();
    void TheTaskRunsUntilStreamingHasEnded();
    void WithoutAPlaybackNoEndIsHeard();
    void AnotherStreamIsLeftAlone_data();
    void AnotherStreamIsLeftAlone();

private:
    void Begin() override;
    void End() override;

    // Makes the task, and forgets what that logs.
    PlayStream& Make();

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

PlayStream& PlayStreamTest::Make()
{
    m_task.emplace(u"8554/live"_s, u"-1"_s);
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
            log.append("2 [tasks/PlayStream.cpp] Invalid volume=" + QByteArray(volume) + ", not used");
        log.append("4 [tasks/PlayStream.cpp] TASK CREATED | PlayStream: portAndPath=" + QByteArray(portAndPath) +
                   " (vol=" + shown + ")");
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
        EXPECT_LOG(9, (ToLines(Request::Find("PlayStream", "8554/live").Ended())));
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

void PlayStreamTest::AnotherStreamIsLeftAlone_data()
{
    Rows<bool, int>::Add({
        {"never run", false, 0},
        {"refused", true, 5},
        {"played to its end", true, 0},
    });
}

void PlayStreamTest::AnotherStreamIsLeftAlone()
{
    const auto& [run, status] = Rows<bool, int>::Current();
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

#include "Log.h"
#include "PipeReader.h"
#include "SoundTest.h"
#include "Suite.h"

#include <sys/resource.h>

#include <csignal>

namespace
{

constexpr qint64 SECOND = 48'000;
constexpr const char* ORIGIN = "/com/kestrelix/ozna/soundmanager/soundobj";

} // namespace

class OutputLossTest final : public SoundTest
{
    Q_OBJECT
private Q_SLOTS:
    void WithoutAnOutputARequestEndsAtOnce_data();
    void WithoutAnOutputARequestEndsAtOnce();
    void APipeThatNobodyReadsIsNoOutput();
    void WhatWaitsIsHeardWhenTheOutputIsBack();
    void AMessageThatSoundsEndsWithTheOutput();
    void WhatIsOnItsWayWaitsForTheOutput_data();
    void WhatIsOnItsWayWaitsForTheOutput();
    void APlaylistGoesOnWhenTheOutputIsBack();
    void AMessageEndsWhenTheOutputIsNotBackInTime_data();
    void AMessageEndsWhenTheOutputIsNotBackInTime();
    void AnOutputThatTakesNothingIsLost();
    void AFullDiskIsALostOutput();

private:
    [[nodiscard]] QString PipePath() const { return Path(QStringLiteral("pipe")); }
    void BeginWithPipe();
    // The records about the output that there have to be, and no others. The reason is that of the first.
    void ExpectLost(const QByteArray& reason);
};

void OutputLossTest::BeginWithPipe()
{
    SoundSettings settings;
    settings.output = QStringLiteral("file:") + PipePath();
    Begin(settings);
}

void OutputLossTest::ExpectLost(const QByteArray& reason)
{
    const QStringList told = LogRecorder::Messages(LEVEL_WARNING);
    LogRecorder::Clear();
    QVERIFY(!told.isEmpty());
    const QString begin = QStringLiteral("OUTPUT LOST | file:");
    QVERIFY2(told[0].startsWith(begin) && told[0].endsWith(QString::fromUtf8(reason)), qPrintable(told.join(u'\n')));
    for (const QString& later : told.mid(1))
        QVERIFY2(later.startsWith(QStringLiteral("OUTPUT NOT OPENED | ")), qPrintable(later));
}

void OutputLossTest::WithoutAnOutputARequestEndsAtOnce_data()
{
    QTest::addColumn<QString>("output");
    QTest::addColumn<QString>("reason");
    QTest::newRow("no folder") << QStringLiteral("file:/nonexistent/a.raw")
                               << QStringLiteral("/nonexistent/a.raw: No such file or directory");
    QTest::newRow("a folder") << QStringLiteral("file:/") << QStringLiteral("/: Is a directory");
    QTest::newRow("a device") << QStringLiteral("file:/dev/null")
                              << QStringLiteral("/dev/null: it is neither a file nor a pipe");
    QTest::newRow("an unknown kind") << QStringLiteral("drum")
                                     << QStringLiteral("there is no such kind of output: drum");
}

void OutputLossTest::WithoutAnOutputARequestEndsAtOnce()
{
    QFETCH(QString, output);
    QFETCH(QString, reason);
    SoundSettings settings;
    settings.output = output;
    Begin(settings);
    const auto id = PlayMessage(Tone(QStringLiteral("a.wav"), SECOND), Now_ms() + 5000);
    QVERIFY(!HasEnded(id));
    QTRY_VERIFY_WITH_TIMEOUT(HasEnded(id), 2000);
    QCOMPARE(*Of(id).ended, QStringLiteral("no output: ") + reason);
    QVERIFY(!Of(id).isReady);
    const QString record = QStringLiteral("1 [sound/Output.cpp] OUTPUT NOT OPENED | %1: %2").arg(output, reason);
    EXPECT_LOG(LEVEL_WARNING, {LogLine(record.toUtf8(), ORIGIN)});
}

void OutputLossTest::APipeThatNobodyReadsIsNoOutput()
{
    PipeReader pipe(PipePath());
    BeginWithPipe();
    const auto id = PlayMessage(Tone(QStringLiteral("a.wav"), SECOND / 4));
    QTRY_VERIFY_WITH_TIMEOUT(HasEnded(id), 2000);
    QVERIFY(Of(id).ended->endsWith(QStringLiteral("nobody reads this pipe")));
    LogRecorder::Clear();

    QVERIFY(pipe.Open());
    const auto again = PlayMessage(Path(QStringLiteral("a.wav")));
    QTRY_VERIFY(HasEnded(again));
    QCOMPARE(*Of(again).ended, QString());
    QVERIFY(pipe.HasHeard());
}

void OutputLossTest::WhatWaitsIsHeardWhenTheOutputIsBack()
{
    PipeReader pipe(PipePath());
    QVERIFY(pipe.Open());
    BeginWithPipe();
    const qint64 due_ms = Now_ms() + 4500;
    const auto id = PlayMessage(Tone(QStringLiteral("a.wav"), SECOND / 4), due_ms);
    QTRY_VERIFY(Of(id).isReady);
    pipe.Close();
    QTest::qWait(1200);
    QVERIFY(pipe.Open());
    QTRY_VERIFY(HasEnded(id));
    QCOMPARE(*Of(id).ended, QString());
    QVERIFY(pipe.HasHeard());
    QVERIFY(std::abs(*Of(id).heard_ms - due_ms) <= 1);
    ExpectLost("Broken pipe)");
}

void OutputLossTest::WhatIsOnItsWayWaitsForTheOutput_data()
{
    QTest::addColumn<qint64>("length");
    QTest::newRow("all of it is on its way") << SECOND / 10;
    QTest::newRow("a part of it is on its way") << SECOND;
}

// An output that leaves in the last moment before a message is heard takes with it what was mixed. Nothing of the
// message was heard: it is told so, and sounds as a whole when the output is back.
void OutputLossTest::WhatIsOnItsWayWaitsForTheOutput()
{
    QFETCH(qint64, length);
    PipeReader pipe(PipePath());
    QVERIFY(pipe.Open());
    BeginWithPipe();
    const QString tone = Tone(QStringLiteral("a.wav"), length);
    const qint64 due_ms = Now_ms() + 1500;
    const auto id = PlayMessage(tone, due_ms);
    QTRY_VERIFY(Of(id).isReady);
    QTRY_VERIFY(Now_ms() >= due_ms - 150);
    pipe.Close();
    QVERIFY(!pipe.HasHeard());
    QTest::qWait(500);
    QVERIFY(!Of(id).heard_ms);
    QVERIFY(!HasEnded(id));
    QVERIFY(pipe.Open());
    QTRY_VERIFY(HasEnded(id));
    QCOMPARE(*Of(id).ended, QString());
    QVERIFY(*Of(id).heard_ms > due_ms);
    // The tone crosses nothing at every 24th of its frames.
    QTRY_COMPARE(pipe.Heard(), length - length / 24);
    ExpectLost("Broken pipe)");
}

void OutputLossTest::AMessageThatSoundsEndsWithTheOutput()
{
    PipeReader pipe(PipePath());
    QVERIFY(pipe.Open());
    BeginWithPipe();
    const auto id = PlayMessage(Tone(QStringLiteral("a.wav"), 20 * SECOND));
    QTRY_VERIFY(Of(id).heard_ms);
    pipe.Close();
    QTRY_VERIFY_WITH_TIMEOUT(HasEnded(id), 1000);
    QVERIFY(Of(id).ended->startsWith(QStringLiteral("no output: ")));
    ExpectLost("Broken pipe)");
}

void OutputLossTest::APlaylistGoesOnWhenTheOutputIsBack()
{
    PipeReader pipe(PipePath());
    QVERIFY(pipe.Open());
    BeginWithPipe();
    const auto id = PlayList({Tone(QStringLiteral("a.wav"), 4 * SECOND)}, 0);
    // Told when it is given to the output, which may be before it is read.
    bool isHeard = false;
    QTRY_VERIFY(isHeard || (isHeard = pipe.HasHeard()));
    pipe.Close();
    QTest::qWait(1000);
    QVERIFY(!HasEnded(id));
    QVERIFY(pipe.Open());
    QTRY_VERIFY_WITH_TIMEOUT(HasEnded(id), 10'000);
    QCOMPARE(*Of(id).ended, QString());
    QVERIFY(pipe.HasHeard());
    ExpectLost("Broken pipe)");
}

void OutputLossTest::AMessageEndsWhenTheOutputIsNotBackInTime_data()
{
    QTest::addColumn<bool>("hasMoment");
    QTest::newRow("at its moment") << true;
    QTest::newRow("at once") << false;
}

void OutputLossTest::AMessageEndsWhenTheOutputIsNotBackInTime()
{
    QFETCH(bool, hasMoment);
    PipeReader pipe(PipePath());
    QVERIFY(pipe.Open());
    BeginWithPipe();
    const QString tone = Tone(QStringLiteral("a.wav"), SECOND);
    const auto id = PlayMessage(tone, hasMoment ? std::optional(Now_ms() + 1500) : std::nullopt);
    QTRY_VERIFY(Of(id).isReady);
    pipe.Close();
    QTRY_VERIFY_WITH_TIMEOUT(HasEnded(id), 6000);
    QVERIFY(Of(id).ended->startsWith(QStringLiteral("no output: ")));
    QVERIFY(!Of(id).heard_ms);
    ExpectLost("Broken pipe)");
}

void OutputLossTest::AnOutputThatTakesNothingIsLost()
{
    PipeReader pipe(PipePath());
    QVERIFY(pipe.Open());
    BeginWithPipe();
    const auto id = PlayMessage(Tone(QStringLiteral("a.wav"), 20 * SECOND));
    QTRY_VERIFY(Of(id).heard_ms);
    pipe.Stall();
    QTRY_VERIFY_WITH_TIMEOUT(HasEnded(id), 9000);
    QVERIFY(Of(id).ended->endsWith(QStringLiteral("it takes no sound any more")));
    ExpectLost("it takes no sound any more");
}

void OutputLossTest::AFullDiskIsALostOutput()
{
    // A file that may not grow is as good as a full disk.
    QVERIFY(std::signal(SIGXFSZ, SIG_IGN) != SIG_ERR);
    rlimit unlimited = {};
    QCOMPARE(getrlimit(RLIMIT_FSIZE, &unlimited), 0);
    rlimit small = unlimited;
    small.rlim_cur = 400'000;
    const QString tone = Tone(QStringLiteral("a.wav"), 20 * SECOND);
    QCOMPARE(setrlimit(RLIMIT_FSIZE, &small), 0);
    const auto id = PlayMessage(tone);
    QTRY_VERIFY_WITH_TIMEOUT(HasEnded(id), 9000);
    QCOMPARE(setrlimit(RLIMIT_FSIZE, &unlimited), 0);
    QVERIFY(Of(id).heard_ms);
    QVERIFY(Of(id).ended->startsWith(QStringLiteral("no output: ")));
    ExpectLost("File too large)");

    // When there is room again, it goes on behind what was written.
    const qint64 written = QFileInfo(OutputPath()).size();
    const auto again = PlayMessage(Tone(QStringLiteral("b.wav"), SECOND / 4));
    QTRY_VERIFY(HasEnded(again));
    QVERIFY(QFileInfo(OutputPath()).size() > written);
}

OZNA_CASE(OutputLoss, OutputLossTest)
#include "tst_OutputLoss.moc"

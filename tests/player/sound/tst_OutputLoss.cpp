#include "Log.h"
#include "PipeReader.h"
#include "SoundTest.h"
#include "Suite.h"

#include <sys/resource.h>

#include <csignal>

namespace
{

constexpr qint64 SECOND = 48'000;
// An output that is lost is tried again after half a second, then after a second.
constexpr qint64 BACK_MS = 2'000;

// A tone crosses nothing at every 24th of its frames.
constexpr qint64 SoundingOf(qint64 length)
{
    return length - length / 24;
}

} // namespace

class OutputLossTest final : public SoundTest
{
    Q_OBJECT
private Q_SLOTS:
    void APipeThatNobodyReadsIsNoOutput();
    void WhatWaitsIsHeardWhenTheOutputIsBack();
    void AMessageThatSoundsEndsWithTheOutput();
    void AMessageWaitsForAnOutputThatLeftJustBefore_data();
    void AMessageWaitsForAnOutputThatLeftJustBefore();
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
    QTRY_COMPARE(pipe.Heard(), SoundingOf(SECOND / 4));
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
    QTRY_COMPARE(pipe.Heard(), SoundingOf(SECOND / 4));
    QVERIFY(std::abs(*Of(id).heard_ms - due_ms) <= 1);
    ExpectLost("Broken pipe)");
}

void OutputLossTest::AMessageWaitsForAnOutputThatLeftJustBefore_data()
{
    QTest::addColumn<qint64>("length");
    QTest::addColumn<int>("ahead_ms");
    for (const int ahead_ms : {300, 150, 60})
        QTest::addRow("%d ms ahead", ahead_ms) << SECOND << ahead_ms;
    QTest::newRow("a short one") << SECOND / 10 << 150;
}

// Nothing of it was heard: it is told so, and sounds as a whole when the output is back.
void OutputLossTest::AMessageWaitsForAnOutputThatLeftJustBefore()
{
    QFETCH(qint64, length);
    QFETCH(int, ahead_ms);
    PipeReader pipe(PipePath());
    QVERIFY(pipe.Open());
    BeginWithPipe();
    const QString tone = Tone(QStringLiteral("a.wav"), length);
    const qint64 due_ms = Now_ms() + 1500;
    const auto id = PlayMessage(tone, due_ms);
    QTRY_VERIFY(Of(id).isReady);
    QTRY_VERIFY(Now_ms() >= due_ms - ahead_ms);
    pipe.Close();
    QVERIFY(!pipe.HasHeard());
    QTest::qWait(500);
    QVERIFY(!Of(id).heard_ms);
    QVERIFY(!HasEnded(id));
    QVERIFY(pipe.Open());
    QTRY_VERIFY(HasEnded(id));
    QCOMPARE(*Of(id).ended, QString());
    QVERIFY(*Of(id).heard_ms > due_ms);
    QVERIFY2(*Of(id).heard_ms < due_ms + BACK_MS, qPrintable(QString::number(*Of(id).heard_ms - due_ms)));
    QTRY_COMPARE(pipe.Heard(), SoundingOf(length));
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
    // It goes on where it was; what was in the pipe is lost, up to a third of a second.
    QTRY_VERIFY(pipe.Heard() > SoundingOf(7 * SECOND / 2));
    QVERIFY(pipe.Heard() <= SoundingOf(4 * SECOND));
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

    // When there is room again, it goes on behind what was written; with silence in between, so that they are told
    // apart.
    const qint64 written = QFileInfo(OutputPath()).size();
    const auto again = PlayMessage(Tone(QStringLiteral("b.wav"), SECOND / 4), Now_ms() + 1000);
    QTRY_VERIFY(HasEnded(again));
    const auto sounds = End().Sounds(480);
    QVERIFY(sounds.last().begin * 4 >= written);
    QCOMPARE(sounds.last().end - sounds.last().begin, SECOND / 4);
}

OZNA_CASE(OutputLoss, OutputLossTest)
#include "tst_OutputLoss.moc"

#include "HeardTest.h"
#include "PulseServer.h"
#include "Suite.h"
#include "ear/Gong.h"

#include <QElapsedTimer>

using namespace Qt::StringLiterals;

// What becomes of requests whose output or file goes away.
class HeardOutput : public HeardTest
{
    Q_OBJECT
private Q_SLOTS:
    void AnOutputComesBackWhileAMessageWaits();
    void AnOutputThatLeavesEndsWhatPlays();
    void AServerThatDiesJustBeforeAMessage();
    void WithoutAnOutputNothingIsAccepted();
    void AnOutputThatHangsForGoodEndsThePlayer();
    void AFileThatIsReplacedWhileItWaits_data();
    void AFileThatIsReplacedWhileItWaits();

private:
    void UseServer(const PulseServer& server);
};

namespace
{

const QString ENDED = u"PlayFileCompleted gong.wav"_s;

} // namespace

void HeardOutput::UseServer(const PulseServer& server)
{
    server.Apply(Player().Environment());
    WriteFile(Path(u"ozna.ini"_s), u"[PLAYER]\nMedia=%1\n"_s.arg(MediaPath(QString())).toUtf8());
}

void HeardOutput::AnOutputComesBackWhileAMessageWaits()
{
    WriteSound(u"gong.wav"_s, MediaFiles::Block(Pcm::RATE / 2));
    QVERIFY(StartPlayer());
    const qint64 due_ms = MomentAhead_ms(8000);
    QCOMPARE(Client().PlayFile(u"gong.wav"_s, TimeText(due_ms)), 0);
    QVERIFY(WaitUntil([&] { return Hearing().Frames() > Pcm::RATE / 2; }));
    Hearing().TakeAway();
    Pause(1500);
    Hearing().Listen();
    QVERIFY(WaitForSounds(1));
    QVERIFY(Client().WaitForSignal(ENDED));
    const double error_ms = Hearing().Sounds()[0].at_ms - static_cast<double>(due_ms);
    QVERIFY2(qAbs(error_ms) < EXACT_MS, qPrintable(QString::number(error_ms)));
    QCOMPARE(Hearing().Sounds()[0].end - Hearing().Sounds()[0].begin, Pcm::RATE / 2);
    QCOMPARE(Client().Signals(), QStringList{ENDED});
    QVERIFY(!Player().Log(2).isEmpty());
    Expect({u"utput"_s});
}

void HeardOutput::AnOutputThatLeavesEndsWhatPlays()
{
    WriteSound(u"gong.wav"_s, MediaFiles::Block(5 * Pcm::RATE));
    QVERIFY(StartPlayer());
    QCOMPARE(Client().PlayFile(u"gong.wav"_s), 0);
    QVERIFY(WaitUntil([&] { return !Hearing().Sounds().empty(); }));
    Hearing().TakeAway();
    // With the output, not at its end by the clock, which is four seconds later.
    QVERIFY(Client().WaitForSignal(ENDED, 1, 2500));
    Hearing().Listen();
    const size_t before = Hearing().Sounds().size();
    WriteSound(u"gong.wav"_s, Gong::Samples(300));
    Pause(3000);
    const qint64 due_ms = MomentAhead_ms(6000);
    QCOMPARE(Client().PlayFile(u"gong.wav"_s, TimeText(due_ms)), 0);
    QVERIFY(Client().WaitForSignal(ENDED, 2));
    QVERIFY(WaitUntil([&] { return Hearing().Sounds().size() > before; }));
    QVERIFY(qAbs(Hearing().Sounds().back().at_ms - static_cast<double>(due_ms)) < EXACT_MS);
    QCOMPARE(Client().Signals().size(), 2);
    Expect({u"utput"_s, u"gong.wav"_s});
}

// What was on its way dies with the server: nothing was heard, so nothing is ended, and the message sounds as a whole
// when there is a server again.
void HeardOutput::AServerThatDiesJustBeforeAMessage()
{
    constexpr int LENGTH_MS = 150; // all of it is on its way
    PulseServer server;
    UseServer(server);
    WriteSound(u"gong.wav"_s, MediaFiles::Block(LENGTH_MS * Pcm::RATE / 1000));
    QVERIFY(StartPlayer());
    const qint64 due_ms = MomentAhead_ms(3000);
    const auto until = [due_ms](qint64 behind_ms) {
        Pause(static_cast<int>(due_ms + behind_ms - QDateTime::currentMSecsSinceEpoch()));
    };
    QCOMPARE(Client().PlayFile(u"gong.wav"_s, TimeText(due_ms)), 0);
    until(-60);
    server.Kill();
    until(300);
    server.Start();
    until(LENGTH_MS + 700);
    QCOMPARE(Client().Signals(), QStringList());
    // The player tries again half a second and a second and a half after the loss.
    QVERIFY(Client().WaitForSignal(ENDED));
    const qint64 late_ms = QDateTime::currentMSecsSinceEpoch() - due_ms - LENGTH_MS;
    QVERIFY2(late_ms < 2500, qPrintable(QString::number(late_ms)));
    QCOMPARE(Player().Log(2).filter(u"it has not come back"_s), QStringList());
    Pause(500);
    QCOMPARE(Client().Signals(), QStringList{ENDED});
    QCOMPARE(StopPlayer(), 0);
    Expect({u"OUTPUT"_s});
}

void HeardOutput::WithoutAnOutputNothingIsAccepted()
{
    WriteSound(u"gong.wav"_s, Gong::Samples(300));
    Hearing().TakeAway();
    QVERIFY(QFile::remove(Path(u"fifo"_s)));
    // A folder is no output.
    QVERIFY(QDir(Path(QString())).mkdir(u"fifo"_s));
    QVERIFY(StartPlayer());
    const int status = Client().PlayFile(u"gong.wav"_s, TimeText(MomentAhead_ms(5000)));
    QVERIFY2(status > 0, qPrintable(QString::number(status)));
    Pause(500);
    QCOMPARE(Client().Signals(), QStringList());
    QVERIFY(!Player().Log(2).isEmpty());
    Expect({u"utput"_s, u"gong.wav"_s});
}

void HeardOutput::AnOutputThatHangsForGoodEndsThePlayer()
{
    PulseServer server;
    UseServer(server);
    WriteSound(u"gong.wav"_s, Gong::Samples(300));
    QVERIFY(StartPlayer());
    server.Halt();
    // Refused with words each time, and after a while the process ends as one that failed.
    QElapsedTimer since;
    since.start();
    while (Player().IsRunning() && !since.hasExpired(30'000))
    {
        QVERIFY(Client().PlayFile(u"gong.wav"_s) != 0);
        Pause(500);
    }
    QCOMPARE(Player().WaitForExit(), EXIT_FAILURE);
    QVERIFY2(since.elapsed() > 10'000, QByteArray::number(since.elapsed()).constData());
    QCOMPARE(Client().Signals(), QStringList());
    QVERIFY(
        !Player().Log(1).filter(u"OUTPUT HANGS | it does not answer: the player ends, to be started anew"_s).isEmpty());
    Expect({u"utput"_s, u"OUTPUT"_s, u"not ready in time"_s});
}

void HeardOutput::AFileThatIsReplacedWhileItWaits_data()
{
    QTest::addColumn<bool>("renamed");
    QTest::addRow("in place") << false;
    QTest::addRow("by another file") << true;
}

void HeardOutput::AFileThatIsReplacedWhileItWaits()
{
    QFETCH(bool, renamed);
    // Longer than what is decoded ahead.
    WriteSound(u"gong.wav"_s, MediaFiles::Block(6 * Pcm::RATE));
    QVERIFY(StartPlayer());
    const qint64 due_ms = MomentAhead_ms(3000);
    QCOMPARE(Client().PlayFile(u"gong.wav"_s, TimeText(due_ms)), 0);
    const QByteArray rubbish(2000, 'x');
    if (renamed)
    {
        WriteFile(MediaPath(u"new"_s), rubbish);
        QVERIFY(QFile::remove(MediaPath(u"gong.wav"_s)));
        QVERIFY(QFile::rename(MediaPath(u"new"_s), MediaPath(u"gong.wav"_s)));
    }
    else
        WriteFile(MediaPath(u"gong.wav"_s), rubbish);
    // What has been read of it sounds at its second, and it ends.
    QVERIFY(Client().WaitForSignal(ENDED));
    QCOMPARE(Client().Signals(), QStringList{ENDED});
    QVERIFY(WaitForSounds(1));
    const Ear::Heard sound = Hearing().Sounds()[0];
    QVERIFY(qAbs(sound.at_ms - static_cast<double>(due_ms)) < EXACT_MS);
    // A file that has another in its place is read to its end. How much has been read of the other one depends on how
    // busy the machine is.
    const qint64 length = sound.end - sound.begin;
    QVERIFY2(renamed ? length == 6 * Pcm::RATE : length > 0, qPrintable(QString::number(length)));
    // Now the name is refused.
    QVERIFY(Client().PlayFile(u"gong.wav"_s) > 0);
    Expect({u"gong.wav"_s});
}

OZNA_CASE(HeardOutput, HeardOutput)
#include "tst_HeardOutput.moc"

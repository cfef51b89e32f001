#include "SoundTest.h"
#include "Suite.h"
#include "ToneServer.h"

namespace
{

constexpr qint64 SECOND = 48'000;
constexpr qint64 APART = 480;

} // namespace

class StreamSoundTest final : public SoundTest
{
    Q_OBJECT
private Q_SLOTS:
    void AStreamIsReadyWithItsFirstSound();
    void AServerThatIsNotThereEndsItWithWords();
    void AStreamGoesOnWhenItsServerIsBack();
    void AStreamThatBreaksEndsWithinTenSeconds();
    void AServerThatFallsSilentIsABrokenStream();
    void AServerThatStallsEachTimeEndsIt();
    void AStreamThatJoinsMovesNothing();
    void AStoppedStreamIsNotTriedAgain();
    void ACaptureDeviceThatIsNotThereEndsItWithWords();

private:
    SoundMaker::Id PlayStream(const QString& address) { return Play({Piece::Place::STREAM, {address}, {}, 0, 100}); }
};

void StreamSoundTest::AStreamIsReadyWithItsFirstSound()
{
    ToneServer server(0.25);
    QVERIFY(server.Start());
    const auto id = PlayStream(server.Address());
    QVERIFY(!Of(id).isReady);
    QTRY_VERIFY(Of(id).heard_ms);
    QVERIFY(Of(id).isReady);
    QTest::qWait(1000);
    QVERIFY(!HasEnded(id));
    Maker().Stop(id);
    QTRY_VERIFY_WITH_TIMEOUT(HasEnded(id), 900);
    QCOMPARE(*Of(id).ended, QString());
    const Recording heard = End();
    const auto sounds = heard.Sounds(APART);
    QCOMPARE(sounds.size(), 1);
    QVERIFY(sounds[0].end - sounds[0].begin > SECOND / 2);
    QVERIFY(heard.LongestSilence(sounds[0].begin, sounds[0].end) < 5);
    QCOMPARE(qRound(100 * heard.Peak()), 25);
}

void StreamSoundTest::AServerThatIsNotThereEndsItWithWords()
{
    const auto id = PlayStream(QStringLiteral("http://127.0.0.1:1/none"));
    QTRY_VERIFY_WITH_TIMEOUT(HasEnded(id), 3000);
    QVERIFY(Of(id).ended->startsWith(QStringLiteral("it cannot be reached or read")));
    QVERIFY(!Of(id).isReady);
    const auto rtsp = PlayStream(QStringLiteral("rtsp://127.0.0.1:1/none"));
    QTRY_VERIFY_WITH_TIMEOUT(HasEnded(rtsp), 3000);
    QVERIFY(!Of(rtsp).ended->isEmpty());
}

void StreamSoundTest::AStreamGoesOnWhenItsServerIsBack()
{
    ToneServer server(0.25);
    QVERIFY(server.Start());
    const auto id = PlayStream(server.Address());
    QTRY_VERIFY(Of(id).heard_ms);
    server.Stop();
    QTest::qWait(2500);
    QVERIFY(!HasEnded(id));
    QVERIFY(server.Start());
    QTRY_COMPARE(server.Asked(), 2);
    QTest::qWait(1500);
    QVERIFY(!HasEnded(id));
    const Recording heard = End();
    const auto sounds = heard.Sounds(SECOND / 4);
    QCOMPARE(sounds.size(), 2);
    QVERIFY(sounds[1].end - sounds[1].begin > SECOND / 2);
    QCOMPARE(qRound(100 * heard.Peak(sounds[1].begin, sounds[1].end)), 25);
}

void StreamSoundTest::AStreamThatBreaksEndsWithinTenSeconds()
{
    ToneServer server(0.25);
    QVERIFY(server.Start());
    const auto id = PlayStream(server.Address());
    QTRY_VERIFY(Of(id).heard_ms);
    server.Stop();
    const qint64 broken_ms = Now_ms();
    QTRY_VERIFY_WITH_TIMEOUT(HasEnded(id), 10'000);
    QVERIFY(Now_ms() - broken_ms > 6000);
    QVERIFY(!Of(id).ended->isEmpty());
    QCOMPARE(Of(id).ends, 1);
}

void StreamSoundTest::AServerThatFallsSilentIsABrokenStream()
{
    ToneServer server(0.25);
    QVERIFY(server.Start());
    const auto id = PlayStream(server.Address());
    QTRY_VERIFY(Of(id).heard_ms);
    server.FallSilent();
    QTRY_VERIFY_WITH_TIMEOUT(server.Asked() >= 2, 12'000);
    QTRY_VERIFY_WITH_TIMEOUT(HasEnded(id), 12'000);
    QVERIFY(!Of(id).ended->isEmpty());
}

// What it sends is heard; its silence is a break after five seconds, and after three in each of three tries.
void StreamSoundTest::AServerThatStallsEachTimeEndsIt()
{
    ToneServer server(0.25);
    server.FallSilentAfter(1000);
    QVERIFY(server.Start());
    const auto id = PlayStream(server.Address());
    QTRY_VERIFY_WITH_TIMEOUT(HasEnded(id), 25'000);
    QVERIFY(!Of(id).ended->isEmpty());
    QCOMPARE(Of(id).ends, 1);
    // The library may ask once more by itself.
    QVERIFY2(server.Asked() >= 4, qPrintable(QString::number(server.Asked())));
    const auto sounds = End().Sounds(SECOND);
    QCOMPARE(sounds.size(), 4);
    // The library gives on whole blocks of 4096 bytes.
    for (const Recording::Sound& sound : sounds)
        QVERIFY2(sound.end - sound.begin > SECOND - 2048, qPrintable(QString::number(sound.end - sound.begin)));
}

void StreamSoundTest::AStreamThatJoinsMovesNothing()
{
    ToneServer server(0);
    QVERIFY(server.Start());
    const qint64 due_ms = Now_ms() + 1000;
    const auto list = PlayList({Tone(QStringLiteral("a.wav"), 3 * SECOND)}, 0, due_ms);
    const auto message = PlayMessage(Tone(QStringLiteral("b.wav"), SECOND / 4), due_ms + 4000);
    QTRY_VERIFY(Of(list).heard_ms);
    QTest::qWait(500);
    const auto stream = PlayStream(server.Address());
    QTRY_VERIFY(Of(stream).heard_ms);
    QTRY_VERIFY(HasEnded(message));
    QVERIFY(std::abs(*Of(message).heard_ms - due_ms - 4000) <= 1);
    const Recording heard = End();
    const auto sounds = heard.Sounds(APART);
    QCOMPARE(sounds.size(), 2);
    QCOMPARE(sounds[0].end - sounds[0].begin, 3 * SECOND);
    QVERIFY(heard.LongestSilence(sounds[0].begin, sounds[0].end) < 5);
    QVERIFY(std::abs(sounds[1].begin - sounds[0].begin - 4 * SECOND) < 48);
}

void StreamSoundTest::AStoppedStreamIsNotTriedAgain()
{
    ToneServer server(0.25);
    QVERIFY(server.Start());
    const auto id = PlayStream(server.Address());
    QTRY_VERIFY(Of(id).heard_ms);
    server.Stop();
    QTest::qWait(200);
    Maker().Stop(id);
    QTRY_VERIFY_WITH_TIMEOUT(HasEnded(id), 1500);
    QVERIFY(server.Start());
    QTest::qWait(4000);
    QCOMPARE(server.Asked(), 1);
}

void StreamSoundTest::ACaptureDeviceThatIsNotThereEndsItWithWords()
{
    const auto id = Play({Piece::Place::AUX, {QStringLiteral("alsa:nosuchdevice")}, {}, 0, 100});
    const auto other = Play({Piece::Place::AUX, {QStringLiteral("drum")}, {}, 0, 100});
    QTRY_VERIFY_WITH_TIMEOUT(HasEnded(id) && HasEnded(other), 3000);
    QVERIFY(!Of(id).ended->isEmpty());
    QCOMPARE(*Of(other).ended, QStringLiteral("there is no such kind of input: drum"));
    QVERIFY(!Of(id).isReady);
}

OZNA_CASE(StreamSound, StreamSoundTest)
#include "tst_StreamSound.moc"

#include "SoundTest.h"
#include "Suite.h"

namespace
{

constexpr qint64 SECOND = 48'000;
constexpr qint64 APART = 480;

} // namespace

// A message beside a playlist. The playlist is the only sound before the message begins and after it has ended.
class DuckingTest final : public SoundTest
{
    Q_OBJECT
private Q_SLOTS:
    void AMessageMakesTheRestQuiet();
    void TheRestMayGoOnAsItIs();
    void APlaylistIsPausedAndGoesOnWhereItWas();
    void APausedPlaylistCanBeStopped();
    void AMessageThatIsStoppedGivesTheRestBack();

private:
    void BeginWith(double duck_percent);
};

void DuckingTest::BeginWith(double duck_percent)
{
    SoundSettings settings;
    settings.duck_percent = duck_percent;
    Begin(settings);
}

void DuckingTest::AMessageMakesTheRestQuiet()
{
    BeginWith(20);
    const qint64 due_ms = Now_ms() + 1000;
    const auto list = PlayList({Tone(QStringLiteral("list.wav"), 4 * SECOND, 0.5)}, 0, due_ms);
    // Silence that makes the rest quiet: so only the rest is in the recording.
    const auto message = PlayMessage(Tone(QStringLiteral("message.wav"), SECOND, 0), due_ms + 1000);
    QTRY_VERIFY(HasEnded(message));
    QTRY_VERIFY(HasEnded(list));

    const Recording heard = End();
    const auto sounds = heard.Sounds(APART);
    QCOMPARE(sounds.size(), 1);
    const qint64 begin = sounds[0].begin;
    QCOMPARE(sounds[0].end - begin, 4 * SECOND);
    const auto peak = [&](qint64 from_ms, qint64 to_ms) {
        return qRound(100 * heard.Peak(begin + from_ms * 48, begin + to_ms * 48));
    };
    QCOMPARE(peak(0, 780), 50);
    // Half of the way down, and at the moment of the message all the way. A ramp begins with a block of 10 ms.
    QVERIFY(std::abs(peak(899, 901) - 30) <= 2);
    QCOMPARE(peak(1003, 1990), 10);
    QVERIFY(std::abs(peak(2099, 2101) - 30) <= 2);
    QCOMPARE(peak(2220, 4000), 50);
    QVERIFY(heard.GreatestStep(begin + 1, sounds[0].end) < 0.07);
}

void DuckingTest::TheRestMayGoOnAsItIs()
{
    BeginWith(100);
    const qint64 due_ms = Now_ms() + 1000;
    const auto list = PlayList({Tone(QStringLiteral("list.wav"), SECOND, 0.25)}, 0, due_ms);
    const auto message = PlayMessage(Tone(QStringLiteral("message.wav"), SECOND / 2, 0.25), due_ms + 250);
    QTRY_VERIFY(HasEnded(list) && HasEnded(message));
    const Recording heard = End();
    const auto sounds = heard.Sounds(APART);
    QCOMPARE(sounds.size(), 1);
    QCOMPARE(qRound(100 * heard.Peak(sounds[0].begin, sounds[0].begin + SECOND / 4 - 100)), 25);
    QCOMPARE(qRound(100 * heard.Peak(sounds[0].begin + 3 * SECOND / 4 + 100, sounds[0].end)), 25);
}

void DuckingTest::APlaylistIsPausedAndGoesOnWhereItWas()
{
    BeginWith(0);
    const qint64 due_ms = Now_ms() + 1000;
    const auto list = PlayList({Tone(QStringLiteral("list.wav"), 2 * SECOND, 0.5)}, 0, due_ms);
    const auto message = PlayMessage(Tone(QStringLiteral("message.wav"), SECOND, 0), due_ms + 1000);
    QTRY_VERIFY(HasEnded(message));
    QVERIFY(!HasEnded(list));
    QTRY_VERIFY(HasEnded(list));

    const Recording heard = End();
    const auto sounds = heard.Sounds(SECOND / 2);
    QCOMPARE(sounds.size(), 2);
    // It is silent for as long as the message, and until the next block of 10 ms begins.
    const qint64 pause = sounds[1].begin - sounds[0].end;
    QVERIFY2(pause >= SECOND && pause < SECOND + 600, qPrintable(QString::number(pause)));
    // Nothing of the list is lost, but what is too quiet at the ends of the ramps.
    const qint64 length = sounds[1].end - sounds[0].begin - pause;
    QVERIFY2(std::abs(length - 2 * SECOND) <= 48, qPrintable(QString::number(length)));
}

void DuckingTest::APausedPlaylistCanBeStopped()
{
    BeginWith(0);
    const auto list = PlayList({Tone(QStringLiteral("list.wav"), 2 * SECOND)}, 0);
    QTRY_VERIFY(Of(list).heard_ms);
    const auto message = PlayMessage(Tone(QStringLiteral("message.wav"), 2 * SECOND, 0));
    QTRY_VERIFY(Of(message).heard_ms);
    QTest::qWait(300);
    Maker().Stop(list);
    QTRY_VERIFY_WITH_TIMEOUT(HasEnded(list), 900);
    QVERIFY(!HasEnded(message));
    QTRY_VERIFY(HasEnded(message));
    // Nothing of it comes when the message has ended.
    const auto sounds = End().Sounds(APART);
    QCOMPARE(sounds.size(), 1);
    QVERIFY(sounds[0].end - sounds[0].begin < 3 * SECOND / 2);
}

void DuckingTest::AMessageThatIsStoppedGivesTheRestBack()
{
    BeginWith(20);
    const auto list = PlayList({Tone(QStringLiteral("list.wav"), 3 * SECOND)}, 0);
    const auto message = PlayMessage(Tone(QStringLiteral("message.wav"), 30 * SECOND, 0));
    QTRY_VERIFY(Of(message).heard_ms && Of(list).heard_ms);
    QTest::qWait(500);
    Maker().Stop(message);
    QTRY_VERIFY(HasEnded(message) && HasEnded(list));
    const Recording heard = End();
    const auto sounds = heard.Sounds(APART);
    QCOMPARE(sounds.size(), 1);
    QCOMPARE(qRound(100 * heard.Peak(sounds[0].end - SECOND, sounds[0].end)), 50);
}

OZNA_CASE(Ducking, DuckingTest)
#include "tst_Ducking.moc"

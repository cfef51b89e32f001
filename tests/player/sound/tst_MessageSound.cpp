#include "SoundTest.h"
#include "Suite.h"

namespace
{

constexpr qint64 SECOND = 48'000;
constexpr qint64 APART = 480;

} // namespace

class MessageSoundTest final : public SoundTest
{
    Q_OBJECT
private Q_SLOTS:
    void AMessageSoundsAtOnceAndWhole();
    void MessagesBeginAtTheirMoments();
    void AMessageThatWaitsHasNoHoles();
    void APastMomentIsNow();
    void WhatIsNoSoundEndsWithWords_data();
    void WhatIsNoSoundEndsWithWords();
    void AStopEndsItSoon();
    void AStopEndsWhatWaits();
    void ANewMessageTakesOverAtItsOwnMoment();
    void VolumesAreHeardSoon();
    void TheOffsetMovesTheStart();
};

void MessageSoundTest::AMessageSoundsAtOnceAndWhole()
{
    const auto id = PlayMessage(Tone(QStringLiteral("a.wav"), SECOND / 2));
    QTRY_VERIFY(HasEnded(id));
    QVERIFY(Of(id).isReady);
    QVERIFY(Of(id).heard_ms.has_value());
    QCOMPARE(*Of(id).ended, QString());
    QCOMPARE(Of(id).ends, 1);
    // The end is told when it has been heard; a timer may be a millisecond early.
    QVERIFY(Of(id).ended_ms >= *Of(id).heard_ms + 498);

    const auto sounds = End().Sounds(APART);
    QCOMPARE(sounds.size(), 1);
    QCOMPARE(sounds[0].end - sounds[0].begin, SECOND / 2);
}

void MessageSoundTest::MessagesBeginAtTheirMoments()
{
    const qint64 due_ms = Now_ms() + 1500;
    const QString tone = Tone(QStringLiteral("a.wav"), SECOND / 10);
    QList<SoundMaker::Id> ids;
    for (int number = 0; number < 5; ++number)
        ids.append(PlayMessage(tone, due_ms + number * 321));
    for (int number = 0; number < 5; ++number)
    {
        QTRY_VERIFY(HasEnded(ids[number]));
        const qint64 late_ms = *Of(ids[number]).heard_ms - (due_ms + number * 321);
        QVERIFY2(std::abs(late_ms) <= 1, qPrintable(QString::number(late_ms)));
    }
    const auto sounds = End().Sounds(APART);
    QCOMPARE(sounds.size(), 5);
    QCOMPARE(sounds[0].end - sounds[0].begin, SECOND / 10);
    for (int number = 1; number < 5; ++number)
    {
        const qint64 error = sounds[number].begin - sounds[0].begin - number * 321 * 48;
        QVERIFY2(std::abs(error) < 48, qPrintable(QString::number(error)));
    }
}

// A file that is held for longer than its decoder is ahead, and lasts longer: nothing is missing where what was held
// ends.
void MessageSoundTest::AMessageThatWaitsHasNoHoles()
{
    const auto id = PlayMessage(Tone(QStringLiteral("a.wav"), 5 * SECOND), Now_ms() + 3000);
    QTRY_VERIFY_WITH_TIMEOUT(HasEnded(id), 15'000);
    const Recording heard = End();
    const auto sounds = heard.Sounds(APART);
    QCOMPARE(sounds.size(), 1);
    QCOMPARE(sounds[0].end - sounds[0].begin, 5 * SECOND);
    QVERIFY(heard.LongestSilence(sounds[0].begin, sounds[0].end) < 5);
}

void MessageSoundTest::APastMomentIsNow()
{
    const qint64 begin_ms = Now_ms();
    const auto id = PlayMessage(Tone(QStringLiteral("a.wav"), SECOND / 10), begin_ms - 5000);
    QTRY_VERIFY(HasEnded(id));
    QVERIFY2(Of(id).heard_ms, qPrintable(*Of(id).ended));
    QVERIFY(*Of(id).heard_ms >= begin_ms);
    QVERIFY(*Of(id).heard_ms < begin_ms + 2000);
    const auto sounds = End().Sounds(APART);
    QCOMPARE(sounds.size(), 1);
    QCOMPARE(sounds[0].end - sounds[0].begin, SECOND / 10);
}

void MessageSoundTest::WhatIsNoSoundEndsWithWords_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<bool>("isThere");
    QTest::newRow("a missing file") << QStringLiteral("none.wav") << QByteArray() << false;
    QTest::newRow("an empty file") << QStringLiteral("empty.wav") << QByteArray() << true;
    QTest::newRow("a text") << QStringLiteral("text.mp3") << QByteArray("just some text\n").repeated(100) << true;
    QTest::newRow("zeros") << QStringLiteral("zeros.ogg") << QByteArray(100'000, '\0') << true;
    QTest::newRow("a folder") << QStringLiteral(".") << QByteArray() << false;
}

void MessageSoundTest::WhatIsNoSoundEndsWithWords()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, content);
    QFETCH(bool, isThere);
    if (isThere)
    {
        QFile file(Path(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(content), content.size());
    }
    const auto id = PlayMessage(Path(name), Now_ms() + 2500);
    QVERIFY(!HasEnded(id));
    QTRY_VERIFY_WITH_TIMEOUT(HasEnded(id), 2200);
    QVERIFY(!Of(id).ended->isEmpty());
    QVERIFY(!Of(id).isReady);
    QVERIFY(!Of(id).heard_ms);
    QTest::qWait(100);
    QCOMPARE(Of(id).ends, 1);
}

void MessageSoundTest::AStopEndsItSoon()
{
    const auto id = PlayMessage(Tone(QStringLiteral("a.wav"), 5 * SECOND));
    QTRY_VERIFY(Of(id).heard_ms);
    Maker().Stop(id);
    QVERIFY(!HasEnded(id));
    QTRY_VERIFY_WITH_TIMEOUT(HasEnded(id), 900);
    QCOMPARE(*Of(id).ended, QString());
    Maker().Stop(id);
    QTest::qWait(50);
    QCOMPARE(Of(id).ends, 1);

    const Recording heard = End();
    const auto sounds = heard.Sounds(APART);
    QCOMPARE(sounds.size(), 1);
    QVERIFY(sounds[0].end - sounds[0].begin < SECOND);
    // It fades: a cut in the middle of the tone would be a step like the one at its begin.
    QVERIFY(heard.GreatestStep(sounds[0].end - 200, sounds[0].end + 10) < 0.05);
}

void MessageSoundTest::AStopEndsWhatWaits()
{
    const auto id = PlayMessage(Tone(QStringLiteral("a.wav"), SECOND), Now_ms() + 1000);
    QTRY_VERIFY(Of(id).isReady);
    Maker().Stop(id);
    QVERIFY(!HasEnded(id));
    QTRY_VERIFY_WITH_TIMEOUT(HasEnded(id), 500);
    QTest::qWait(1200);
    QCOMPARE(End().Peak(), 0.0);
}

void MessageSoundTest::ANewMessageTakesOverAtItsOwnMoment()
{
    const qint64 due_ms = Now_ms() + 1500;
    const auto first = PlayMessage(Tone(QStringLiteral("a.wav"), 3 * SECOND, 0.25), due_ms);
    const auto second = PlayMessage(Tone(QStringLiteral("b.wav"), SECOND / 2, 0.5), due_ms + 1000);
    QTRY_VERIFY(HasEnded(first));
    QCOMPARE(*Of(first).ended, QString());
    QVERIFY(!HasEnded(second));
    QTRY_VERIFY(HasEnded(second));

    const Recording heard = End();
    const auto sounds = heard.Sounds(APART);
    QCOMPARE(sounds.size(), 1);
    QVERIFY(std::abs(sounds[0].end - sounds[0].begin - 3 * SECOND / 2) < 48);
    QVERIFY(heard.Peak(sounds[0].begin, sounds[0].begin + SECOND - 48) < 0.26);
    QVERIFY(heard.Peak(sounds[0].begin + SECOND + 2400, sounds[0].end) > 0.49);
    QVERIFY(heard.Peak(sounds[0].begin + SECOND + 2400, sounds[0].end) < 0.51);
}

void MessageSoundTest::VolumesAreHeardSoon()
{
    const auto id = PlayMessage(Tone(QStringLiteral("a.wav"), 3 * SECOND), {}, 50);
    QTRY_VERIFY(Of(id).heard_ms);
    const qint64 begun_ms = *Of(id).heard_ms;
    QTRY_VERIFY(Now_ms() > begun_ms + 800);
    Maker().SetVolume(id, 100);
    QTRY_VERIFY(Now_ms() > begun_ms + 1800);
    Maker().SetMasterVolume(10);
    QTRY_VERIFY(HasEnded(id));

    const Recording heard = End();
    const auto sounds = heard.Sounds(APART);
    QCOMPARE(sounds.size(), 1);
    const auto peakAt = [&](qint64 at_ms) {
        const qint64 frame = sounds[0].begin + at_ms * 48;
        return qRound(100 * heard.Peak(frame, frame + 4800));
    };
    QCOMPARE(peakAt(500), 25);
    QCOMPARE(peakAt(1400), 50);
    QCOMPARE(peakAt(2400), 5);
}

void MessageSoundTest::TheOffsetMovesTheStart()
{
    SoundSettings settings;
    settings.offset_ms = 250;
    Begin(settings);
    const qint64 due_ms = Now_ms() + 1000;
    const auto id = PlayMessage(Tone(QStringLiteral("a.wav"), SECOND / 10), due_ms);
    QTRY_VERIFY(HasEnded(id));
    QVERIFY(std::abs(*Of(id).heard_ms - due_ms - 250) <= 1);
}

OZNA_CASE(MessageSound, MessageSoundTest)
#include "tst_MessageSound.moc"

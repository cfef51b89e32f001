#include "SoundTest.h"
#include "Suite.h"

namespace
{

constexpr qint64 SECOND = 48'000;
constexpr qint64 APART = 100;

} // namespace

class PlaylistSoundTest final : public SoundTest
{
    Q_OBJECT
private Q_SLOTS:
    void TheGapIsExact_data();
    void TheGapIsExact();
    void TracksWithoutAGapAreOneSound();
    void ShortTracksFollowEachOther();
    void ABadTrackIsSkipped();
    void NothingButBadTracksEndsWithWords();
    void AnEmptyListEndsWithWords();
    void AListBeginsAtItsMoment();
    void ANewListTakesTheOldOnesPlace();
};

void PlaylistSoundTest::TheGapIsExact_data()
{
    QTest::addColumn<qint64>("gap_ms");
    QTest::newRow("2 s") << qint64(2000);
    QTest::newRow("10 ms") << qint64(10);
}

void PlaylistSoundTest::TheGapIsExact()
{
    QFETCH(qint64, gap_ms);
    const QString tone = Tone(QStringLiteral("a.wav"), SECOND / 2);
    const auto id = PlayList({tone, Tone(QStringLiteral("b.wav"), SECOND / 4), tone}, gap_ms);
    QTRY_VERIFY_WITH_TIMEOUT(HasEnded(id), 10'000);
    QCOMPARE(*Of(id).ended, QString());
    QCOMPARE(Of(id).skipped, QStringList());

    const auto sounds = End().Sounds(APART);
    QCOMPARE(sounds.size(), 3);
    QCOMPARE(sounds[0].end - sounds[0].begin, SECOND / 2);
    QCOMPARE(sounds[1].begin - sounds[0].end, gap_ms * 48);
    QCOMPARE(sounds[1].end - sounds[1].begin, SECOND / 4);
    QCOMPARE(sounds[2].begin - sounds[1].end, gap_ms * 48);
}

void PlaylistSoundTest::TracksWithoutAGapAreOneSound()
{
    const QString tone = Tone(QStringLiteral("a.wav"), 3 * SECOND / 2);
    const auto id = PlayList({tone, tone, tone}, 0);
    QTRY_VERIFY_WITH_TIMEOUT(HasEnded(id), 10'000);
    const Recording heard = End();
    const auto sounds = heard.Sounds(APART);
    QCOMPARE(sounds.size(), 1);
    QCOMPARE(sounds[0].end - sounds[0].begin, 9 * SECOND / 2);
    // Whole periods of a tone, joined: no step is greater than the tone's own.
    QVERIFY(heard.GreatestStep(sounds[0].begin + 1, sounds[0].end) < 0.07);
}

void PlaylistSoundTest::ShortTracksFollowEachOther()
{
    // As short as can be prepared in time where a sanitizer slows it down.
    constexpr int TRACKS = 16;
    const auto id = PlayList(QStringList(TRACKS, Tone(QStringLiteral("a.wav"), SECOND / 4)), 50);
    QTRY_VERIFY_WITH_TIMEOUT(HasEnded(id), 15'000);
    const auto sounds = End().Sounds(APART);
    QCOMPARE(sounds.size(), TRACKS);
    for (int track = 1; track < TRACKS; ++track)
        QCOMPARE(sounds[track].begin - sounds[track - 1].begin, SECOND / 4 + SECOND / 20);
}

void PlaylistSoundTest::ABadTrackIsSkipped()
{
    QFile text(Path(QStringLiteral("text.ogg")));
    QVERIFY(text.open(QIODevice::WriteOnly));
    QVERIFY(text.write("no sound at all") > 0);
    text.close();
    const QString tone = Tone(QStringLiteral("a.wav"), SECOND / 4);
    const auto id = PlayList({Path(QStringLiteral("none.mp3")), tone, text.fileName(), tone}, 500);
    QTRY_VERIFY_WITH_TIMEOUT(HasEnded(id), 10'000);
    QCOMPARE(*Of(id).ended, QString());
    QCOMPARE(Of(id).skipped.size(), 2);
    QCOMPARE(Of(id).skipped[0], QStringLiteral("none.mp3: there is no such file"));
    QVERIFY(Of(id).skipped[1].startsWith(QStringLiteral("text.ogg: ")));

    const auto sounds = End().Sounds(APART);
    QCOMPARE(sounds.size(), 2);
    QCOMPARE(sounds[0].end - sounds[0].begin, SECOND / 4);
    QCOMPARE(sounds[1].begin - sounds[0].end, SECOND / 2);
    QCOMPARE(sounds[1].end - sounds[1].begin, SECOND / 4);
}

void PlaylistSoundTest::NothingButBadTracksEndsWithWords()
{
    const auto id = PlayList({Path(QStringLiteral("a.mp3")), Path(QStringLiteral("b.mp3"))}, 0, Now_ms() + 3000);
    QTRY_VERIFY_WITH_TIMEOUT(HasEnded(id), 2000);
    QVERIFY(!Of(id).isReady);
    QVERIFY(!Of(id).ended->isEmpty());
    QCOMPARE(Of(id).skipped.size(), 2);
}

void PlaylistSoundTest::AnEmptyListEndsWithWords()
{
    const auto id = PlayList({}, 0);
    QVERIFY(!HasEnded(id));
    QTRY_VERIFY_WITH_TIMEOUT(HasEnded(id), 1000);
    QCOMPARE(*Of(id).ended, QStringLiteral("there is nothing to play"));
}

void PlaylistSoundTest::AListBeginsAtItsMoment()
{
    const qint64 due_ms = Now_ms() + 1200;
    const auto id = PlayList({Tone(QStringLiteral("a.wav"), SECOND / 4)}, 0, due_ms);
    QTRY_VERIFY(HasEnded(id));
    QVERIFY(std::abs(*Of(id).heard_ms - due_ms) <= 1);
    const auto sounds = End().Sounds(APART);
    QCOMPARE(sounds.size(), 1);
    QCOMPARE(sounds[0].end - sounds[0].begin, SECOND / 4);
}

void PlaylistSoundTest::ANewListTakesTheOldOnesPlace()
{
    const auto first = PlayList({Tone(QStringLiteral("a.wav"), 5 * SECOND, 0.25)}, 0);
    QTRY_VERIFY(Of(first).heard_ms);
    const auto second = PlayList({Tone(QStringLiteral("b.wav"), SECOND / 2, 0.5)}, 0);
    QTRY_VERIFY_WITH_TIMEOUT(HasEnded(first), 1500);
    QCOMPARE(*Of(first).ended, QString());
    QTRY_VERIFY(HasEnded(second));
    const Recording heard = End();
    const auto sounds = heard.Sounds(APART);
    QCOMPARE(sounds.size(), 1);
    QVERIFY(sounds[0].end - sounds[0].begin < 3 * SECOND);
    QCOMPARE(qRound(100 * heard.Peak(sounds[0].begin, sounds[0].begin + 480)), 25);
    // The second one is whole, and alone once the first has faded.
    QCOMPARE(qRound(100 * heard.Peak(sounds[0].end - SECOND / 2 + 2400, sounds[0].end)), 50);
}

OZNA_CASE(PlaylistSound, PlaylistSoundTest)
#include "tst_PlaylistSound.moc"

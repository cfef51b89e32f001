#include "SoundTest.h"
#include "Suite.h"

namespace
{

constexpr qint64 SECOND = 48'000;
constexpr qint64 APART = 480;

} // namespace

// Sounds unlike most: of another rate, in long blocks, or more of them than there is room for.
class OddSoundsTest final : public SoundTest
{
    Q_OBJECT
private Q_SLOTS:
    void AMessageMayComeInLongBlocks();
    void AnotherRateIsAsLong_data();
    void AnotherRateIsAsLong();
    void TooManyThatWaitAreRefused();
};

// A file of a low rate is read in blocks of four seconds, longer than what is held.
void OddSoundsTest::AMessageMayComeInLongBlocks()
{
    constexpr int RATE = 500;
    const auto id = PlayMessage(Tone(QStringLiteral("slow.wav"), 10 * RATE, 0.5, RATE));
    QTRY_VERIFY_WITH_TIMEOUT(HasEnded(id), 15'000);
    QCOMPARE(*Of(id).ended, QString());
    QVERIFY(Of(id).isReady);
    const auto sounds = End().Sounds(APART);
    QCOMPARE(sounds.size(), 1);
    // A filter for such a rate rings for some of its samples, of 96 frames each.
    const qint64 error = sounds[0].end - sounds[0].begin - 10 * SECOND;
    QVERIFY2(std::abs(error) < SECOND / 4, qPrintable(QString::number(error)));
}

void OddSoundsTest::AnotherRateIsAsLong_data()
{
    QTest::addColumn<int>("rate");
    QTest::addColumn<qint64>("length");
    for (const int rate : {8'000, 22'050, 32'000, 44'100, 48'000, 96'000})
        QTest::addRow("a second of %d Hz", rate) << rate << qint64(rate);
    // 48,001.09, 48,006.53 and 23,998.91 frames.
    for (const qint64 length : {44'101, 44'106, 22'049})
        QTest::addRow("%lld samples of 44100 Hz", static_cast<long long>(length)) << 44'100 << length;
}

// To the nearest frame: so the next track is never more than half a frame from where it would be without frames. One
// that was always rounded down or up would move it by a frame a track.
void OddSoundsTest::AnotherRateIsAsLong()
{
    QFETCH(int, rate);
    QFETCH(qint64, length);
    const QString tone = Tone(QStringLiteral("a.wav"), length, 0.5, rate);
    const auto id = PlayList({tone, tone, tone}, 500);
    QTRY_VERIFY_WITH_TIMEOUT(HasEnded(id), 10'000);
    QCOMPARE(*Of(id).ended, QString());
    const auto sounds = End().Sounds(SECOND / 4);
    QCOMPARE(sounds.size(), 3);
    const qint64 frames = (length * SECOND + rate / 2) / rate;
    QCOMPARE(sounds[1].begin - sounds[0].begin, frames + SECOND / 2);
    QCOMPARE(sounds[2].begin - sounds[1].begin, frames + SECOND / 2);
    // The filter rings for a moment before and behind what it filters; what begins there begins as far ahead.
    const qint64 error = sounds[0].end - sounds[0].begin - frames;
    QVERIFY2(std::abs(error) <= 2 * APART, qPrintable(QString::number(error)));
    QCOMPARE(sounds[2].end - sounds[2].begin, sounds[0].end - sounds[0].begin);
}

void OddSoundsTest::TooManyThatWaitAreRefused()
{
    constexpr int MOST = 64;
    const QString tone = Tone(QStringLiteral("a.wav"), SECOND / 10);
    QList<SoundMaker::Id> ids;
    for (int number = 0; number < MOST; ++number)
    {
        ids.append(PlayMessage(tone, Now_ms() + 120'000));
        // All at once would not be ready in time where a sanitizer slows them down.
        QTRY_VERIFY(Of(ids.back()).isReady);
    }
    const auto refused = PlayMessage(tone, Now_ms() + 120'000);
    QVERIFY(!HasEnded(refused));
    QTRY_VERIFY_WITH_TIMEOUT(HasEnded(refused), 1000);
    QCOMPARE(*Of(refused).ended, QStringLiteral("64 others wait already"));
    for (const auto id : ids)
        QVERIFY(!HasEnded(id));
    // One that has ended makes room.
    Maker().Stop(ids[0]);
    QTRY_VERIFY(HasEnded(ids[0]));
    const auto next = PlayMessage(tone);
    QTRY_VERIFY(HasEnded(next));
    QCOMPARE(*Of(next).ended, QString());
}

OZNA_CASE(OddSounds, OddSoundsTest)
#include "tst_OddSounds.moc"

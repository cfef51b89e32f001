#include "Suite.h"
#include "ear/Gong.h"
#include "ear/Onsets.h"

#include <QTest>

#include <algorithm>

// Where sounds begin and end, to the frame, however the stream is cut into pieces.
class OnsetsTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void ASoundBeginsAndEndsToTheFrame();
    void WhatIsQuietIsNoSound();
    void AShortSilenceBelongsToTheSound();
    void APieceMayBeginAnywhere_data();
    void APieceMayBeginAnywhere();
    void OneChannelIsEnough();
    void ALevelIsThatOfItsSamples();
    void AGongBeginsAtItsLoudestAndDiesAway();
    void AGongIsTheSameEachTime();
};

namespace
{

constexpr Pcm::Sample LOUD = 8000;
constexpr Pcm::Sample QUIET = 900; // below the threshold

void Append(std::vector<Pcm::Sample>& samples, qint64 frames, Pcm::Sample value)
{
    samples.insert(samples.end(), static_cast<size_t>(frames * Pcm::CHANNELS), value);
}

// A second of silence, two sounds with a silence of that length between them, and silence to the end.
std::vector<Pcm::Sample> TwoSounds(qint64 gap, Pcm::Sample between = 0)
{
    std::vector<Pcm::Sample> samples;
    Append(samples, Pcm::RATE, 0);
    Append(samples, 100, LOUD);
    Append(samples, gap, between);
    Append(samples, 1, -LOUD);
    Append(samples, Pcm::RATE, 0);
    return samples;
}

} // namespace

void OnsetsTest::ASoundBeginsAndEndsToTheFrame()
{
    Onsets onsets;
    onsets.Feed(TwoSounds(96000));
    const std::vector<Onsets::Sound> expected{{48000, 48100}, {144100, 144101}};
    QVERIFY(onsets.Ended() == expected);
    QVERIFY(!onsets.Sounding());
    QCOMPARE(onsets.Frames(), qint64{48000 + 100 + 96000 + 1 + 48000});
}

void OnsetsTest::WhatIsQuietIsNoSound()
{
    Onsets onsets;
    onsets.Feed(TwoSounds(96000, QUIET));
    QCOMPARE(onsets.Ended().size(), size_t{2});
    QCOMPARE(onsets.Ended()[0].end, qint64{48100});
}

void OnsetsTest::AShortSilenceBelongsToTheSound()
{
    Onsets onsets;
    onsets.Feed(TwoSounds(Onsets::HOLD));
    QCOMPARE(onsets.Ended().size(), size_t{1});
    QCOMPARE(onsets.Ended()[0].end, 48100 + Onsets::HOLD + 1);
    Onsets apart;
    apart.Feed(TwoSounds(Onsets::HOLD + 1));
    QCOMPARE(apart.Ended().size(), size_t{2});
}

void OnsetsTest::APieceMayBeginAnywhere_data()
{
    QTest::addColumn<size_t>("frames");
    for (const size_t frames : std::initializer_list<size_t>{1, 7, 480, 48000})
        QTest::addRow("%zu frames", frames) << frames;
}

void OnsetsTest::APieceMayBeginAnywhere()
{
    QFETCH(size_t, frames);
    const std::vector<Pcm::Sample> samples = TwoSounds(20000);
    Onsets onsets;
    for (std::span<const Pcm::Sample> left = samples; !left.empty();)
    {
        const size_t size = std::min(left.size(), frames * Pcm::CHANNELS);
        onsets.Feed(left.first(size));
        left = left.subspan(size);
    }
    const std::vector<Onsets::Sound> expected{{48000, 48100}, {68100, 68101}};
    QVERIFY(onsets.All() == expected);
}

void OnsetsTest::OneChannelIsEnough()
{
    Onsets onsets;
    onsets.Feed(std::vector<Pcm::Sample>{0, 0, 0, LOUD, 0, 0});
    QVERIFY(onsets.Sounding());
    QVERIFY((*onsets.Sounding() == Onsets::Sound{1, 2}));
}

void OnsetsTest::ALevelIsThatOfItsSamples()
{
    QCOMPARE(Pcm::Level({}), 0.0);
    QCOMPARE(Pcm::Level(std::vector<Pcm::Sample>{32767, -32767}), 1.0);
    QCOMPARE(Pcm::Level(std::vector<Pcm::Sample>{32767, 0, 0, 0}), 0.5);
}

void OnsetsTest::AGongBeginsAtItsLoudestAndDiesAway()
{
    const std::vector<Pcm::Sample> gong = Gong::Samples();
    QCOMPARE(static_cast<qint64>(gong.size()), Gong::LENGTH_MS * Pcm::RATE / 1000 * Pcm::CHANNELS);
    QCOMPARE(gong[0], Pcm::Sample{22937}); // 0.7 of full scale
    QCOMPARE(*std::ranges::max_element(gong), gong[0]);
    QVERIFY(std::abs(gong.back()) < 30);
    Onsets onsets;
    onsets.Feed(gong);
    QCOMPARE(onsets.All().size(), size_t{1}); // no hole is in it
}

void OnsetsTest::AGongIsTheSameEachTime()
{
    QVERIFY(Gong::Samples(300) == Gong::Samples(300));
    QCOMPARE(Gong::Samples(300).size(), size_t{14400} * Pcm::CHANNELS);
}

OZNA_CASE(Onsets, OnsetsTest)
#include "tst_Onsets.moc"

#include "HeardTest.h"
#include "Rows.h"
#include "Suite.h"

using namespace Qt::StringLiterals;

// A playlist sounds from its track on, with its gaps, to the frame.
class HeardPlaylist : public HeardTest
{
    Q_OBJECT
private Q_SLOTS:
    void AGapIsExact_data();
    void AGapIsExact();
    void WithoutAGapNothingIsBetween_data();
    void WithoutAGapNothingIsBetween();
    void OfAnotherRateTheyFollowToTheFrame_data();
    void OfAnotherRateTheyFollowToTheFrame();
    void ItBeginsWithTheTrackAskedFor();
    void ATrackThatCannotBePlayedIsSkipped();
    void AStopEndsTheRightOne();

private:
    // Four tracks of that form; each is 100 ms longer than the one before it. The list is "morning".
    void WriteTracks(const QString& suffix) const;
};

namespace
{

constexpr qint64 FIRST = 24'000; // frames
constexpr qint64 LONGER = 4'800;
constexpr qint64 TWO_SECONDS = 96'000;
const QString ENDED = u"PlayPlaylistCompleted morning"_s;

// How long each track is, and how long the silence before it, in frames.
QList<qint64> Lengths(const std::vector<Ear::Heard>& sounds)
{
    QList<qint64> lengths;
    for (const Ear::Heard& sound : sounds)
        lengths.append(sound.end - sound.begin);
    return lengths;
}

QList<qint64> Gaps(const std::vector<Ear::Heard>& sounds)
{
    QList<qint64> gaps;
    for (size_t i = 1; i < sounds.size(); ++i)
        gaps.append(sounds[i].begin - sounds[i - 1].end);
    return gaps;
}

} // namespace

void HeardPlaylist::WriteTracks(const QString& suffix) const
{
    QByteArray lines;
    for (int i = 0; i < 4; ++i)
    {
        const QString name = u"track%1.%2"_s.arg(i + 1).arg(suffix);
        WriteSound(name, MediaFiles::Block(FIRST + i * LONGER));
        lines += name.toUtf8() + ";1\n";
    }
    WritePlaylist(u"morning"_s, lines);
}

void HeardPlaylist::AGapIsExact_data()
{
    Rows<QString>::Add({{"wav", u"wav"_s}, {"flac", u"flac"_s}});
}

void HeardPlaylist::AGapIsExact()
{
    WriteTracks(Rows<QString>::Current());
    QVERIFY(StartPlayer());
    const qint64 due_ms = MomentAhead_ms(3000);
    QCOMPARE(Client().PlayPlaylist(u"morning"_s, u"p1"_s, 1, TimeText(due_ms)), 0);
    QVERIFY(WaitForSounds(4));
    QVERIFY(Client().WaitForSignal(ENDED));
    const std::vector<Ear::Heard> sounds = Hearing().Sounds();
    QCOMPARE(Lengths(sounds), (QList<qint64>{FIRST, FIRST + LONGER, FIRST + 2 * LONGER, FIRST + 3 * LONGER}));
    QCOMPARE(Gaps(sounds), (QList<qint64>{TWO_SECONDS, TWO_SECONDS, TWO_SECONDS}));
    const double error_ms = sounds[0].at_ms - static_cast<double>(due_ms);
    QVERIFY2(qAbs(error_ms) < EXACT_MS, qPrintable(QString::number(error_ms)));
    QCOMPARE(Client().Signals(), QStringList{ENDED});
}

void HeardPlaylist::WithoutAGapNothingIsBetween_data()
{
    Rows<QString>::Add({{"wav", u"wav"_s}, {"flac", u"flac"_s}});
}

void HeardPlaylist::WithoutAGapNothingIsBetween()
{
    WriteSettings("Gap=0\n");
    WriteTracks(Rows<QString>::Current());
    QVERIFY(StartPlayer());
    QCOMPARE(Client().PlayPlaylist(u"morning"_s, u"p1"_s), 0);
    QVERIFY(WaitForSounds(1));
    QVERIFY(Client().WaitForSignal(ENDED));
    QCOMPARE(Lengths(Hearing().Sounds()), QList<qint64>{4 * FIRST + 6 * LONGER});
    const Ear::Heard sound = Hearing().Sounds()[0];
    // No frame of silence is in it: all of it is as loud as the tracks are.
    QVERIFY(qAbs(Hearing().Level(sound.begin, sound.end) - 0.25) < 0.001);
}

void HeardPlaylist::OfAnotherRateTheyFollowToTheFrame_data()
{
    // Of ogg at this rate the library's decoder gives a sample more than there are.
    Rows<QString, qint64>::Add({{"flac", u"flac"_s, 22'048}, {"ogg", u"ogg"_s, 22'049}});
}

void HeardPlaylist::OfAnotherRateTheyFollowToTheFrame()
{
    constexpr int RATE = 44'100;
    constexpr qint64 LENGTH = 22'048;
    const auto& [suffix, length] = Rows<QString, qint64>::Current();
    const qint64 frames = (length * Pcm::RATE + RATE / 2) / RATE;
    const QString name = u"track."_s + suffix;
    MediaFiles::Write(MediaPath(name), MediaFiles::Block(LENGTH), RATE);
    WritePlaylist(u"morning"_s, (name.toUtf8() + ";1\n").repeated(4));
    QVERIFY(StartPlayer());
    QCOMPARE(Client().PlayPlaylist(u"morning"_s, u"p1"_s), 0);
    QVERIFY(WaitForSounds(4));
    QVERIFY(Client().WaitForSignal(ENDED));
    const std::vector<Ear::Heard> sounds = Hearing().Sounds();
    for (size_t i = 1; i < sounds.size(); ++i)
        QCOMPARE(sounds[i].begin - sounds[i - 1].begin, frames + TWO_SECONDS);
}

void HeardPlaylist::ItBeginsWithTheTrackAskedFor()
{
    WriteTracks(u"wav"_s);
    QVERIFY(StartPlayer());
    QCOMPARE(Client().PlayPlaylist(u"morning"_s, u"p1"_s, 3), 0);
    QVERIFY(Client().WaitForSignal(ENDED));
    QVERIFY(WaitForSounds(2));
    QCOMPARE(Lengths(Hearing().Sounds()), (QList<qint64>{FIRST + 2 * LONGER, FIRST + 3 * LONGER}));
}

void HeardPlaylist::ATrackThatCannotBePlayedIsSkipped()
{
    WriteTracks(u"wav"_s);
    WriteFile(MediaPath(u"track2.wav"_s), QByteArray(3000, 'x'));
    QVERIFY(QFile::remove(MediaPath(u"track3.wav"_s)));
    QVERIFY(StartPlayer());
    QCOMPARE(Client().PlayPlaylist(u"morning"_s, u"p1"_s), 0);
    QVERIFY(Client().WaitForSignal(ENDED));
    QVERIFY(WaitForSounds(2));
    QCOMPARE(Lengths(Hearing().Sounds()), (QList<qint64>{FIRST, FIRST + 3 * LONGER}));
    QCOMPARE(Player().Log(2).filter(u"track2.wav"_s).size(), 1);
    QCOMPARE(Player().Log(2).filter(u"track3.wav"_s).size(), 1);
    Expect({u"track2.wav"_s, u"track3.wav"_s});
}

void HeardPlaylist::AStopEndsTheRightOne()
{
    WriteTracks(u"wav"_s);
    QVERIFY(StartPlayer());
    QCOMPARE(Client().PlayPlaylist(u"morning"_s, u"p1"_s), 0);
    QVERIFY(WaitUntil([&] { return !Hearing().Sounds().empty(); }));
    // Of another identifier nothing plays.
    static_cast<void>(Client().Call("StopPlay", {u"playlist"_s, u"p2"_s}));
    QVERIFY(WaitForSounds(2));
    QCOMPARE(Client().Signals(), QStringList());
    QCOMPARE(Client().Call("StopPlay", {u"playlist"_s, u"p1"_s}), 0);
    QVERIFY(Client().WaitForSignal(ENDED));
    Pause(3000);
    QCOMPARE(Hearing().Sounds().size(), size_t{2});
}

OZNA_CASE(HeardPlaylist, HeardPlaylist)
#include "tst_HeardPlaylist.moc"

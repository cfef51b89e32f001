#include "HeardTest.h"
#include "Suite.h"
#include "ear/Gong.h"

using namespace Qt::StringLiterals;

// A message over what plays, and a message over a message.
class HeardTogether : public HeardTest
{
    Q_OBJECT
private Q_SLOTS:
    void AMessageLowersAPlaylist();
    void AMessageThatPausesLosesNothingOfAPlaylist();
    void AMessageTakesOverAtItsTime();
    void AVolumeAheadLeavesWhatPlaysAlone();
    void VolumesAreKeptOverARestart();

private:
    void WriteMusic(qint64 frames) const;
    // The level of 20 ms that begin so long after that frame.
    [[nodiscard]] double LevelAt(qint64 frame, double after_ms) const;
};

namespace
{

constexpr double MUSIC = 0.25; // its level
constexpr qint64 SECOND = Pcm::RATE;
constexpr qint64 MS = Pcm::RATE / 1000; // frames

bool IsAbout(double level, double expected)
{
    return qAbs(level - expected) < 0.03 * MUSIC;
}

} // namespace

void HeardTogether::WriteMusic(qint64 frames) const
{
    WriteSound(u"music.wav"_s, MediaFiles::Block(frames, MUSIC));
    WritePlaylist(u"morning"_s, "music.wav;10\n");
}

double HeardTogether::LevelAt(qint64 frame, double after_ms) const
{
    const qint64 begin = frame + std::llround(after_ms * MS);
    return Hearing().Level(begin, begin + 20 * MS);
}

void HeardTogether::AMessageLowersAPlaylist()
{
    WriteMusic(8 * SECOND);
    // A message that cannot be heard shows what becomes of the rest.
    WriteSound(u"quiet.wav"_s, std::vector<Pcm::Sample>(2 * SECOND * Pcm::CHANNELS));
    QVERIFY(StartPlayer());
    const qint64 due_ms = MomentAhead_ms(4000);
    QCOMPARE(Client().PlayPlaylist(u"morning"_s, u"p1"_s), 0);
    QCOMPARE(Client().PlayFile(u"quiet.wav"_s, TimeText(due_ms)), 0);
    QVERIFY(Client().WaitForSignal(u"PlayPlaylistCompleted morning"_s));
    QVERIFY(WaitForSounds(1));
    const Ear::Heard music = Hearing().Sounds()[0];
    QCOMPARE(music.end - music.begin, 8 * SECOND);
    const qint64 due = music.begin + std::llround((static_cast<double>(due_ms) - music.at_ms) * MS);
    // The ramp of 200 ms lies around the moment, at its beginning and at its end.
    QVERIFY(IsAbout(LevelAt(due, -300), MUSIC));
    QVERIFY2(IsAbout(LevelAt(due, 300), 0.2 * MUSIC), qPrintable(QString::number(LevelAt(due, 300))));
    QVERIFY(IsAbout(LevelAt(due, 1700), 0.2 * MUSIC));
    QVERIFY2(IsAbout(LevelAt(due, 2500), MUSIC), qPrintable(QString::number(LevelAt(due, 2500))));
    // Nobody hears steps: in 20 ms a ramp goes by a tenth of its height, with some room for where it begins.
    for (int after_ms = -300; after_ms < 2600; after_ms += 20)
    {
        const double step = qAbs(LevelAt(due, after_ms + 20) - LevelAt(due, after_ms));
        QVERIFY2(step < 0.25 * MUSIC, qPrintable(u"%1 at %2 ms"_s.arg(step).arg(after_ms)));
    }
}

void HeardTogether::AMessageThatPausesLosesNothingOfAPlaylist()
{
    WriteSettings("Duck=0\n");
    WriteMusic(4 * SECOND);
    WriteSound(u"quiet.wav"_s, std::vector<Pcm::Sample>(2 * SECOND * Pcm::CHANNELS));
    QVERIFY(StartPlayer());
    QCOMPARE(Client().PlayPlaylist(u"morning"_s, u"p1"_s), 0);
    QVERIFY(WaitUntil([&] { return !Hearing().Sounds().empty(); }));
    QCOMPARE(Client().PlayFile(u"quiet.wav"_s, TimeText(MomentAhead_ms(1000))), 0);
    QVERIFY(Client().WaitForSignal(u"PlayPlaylistCompleted morning"_s));
    QVERIFY(WaitForSounds(2));
    const std::vector<Ear::Heard> sounds = Hearing().Sounds();
    QCOMPARE(sounds.size(), size_t{2});
    const qint64 heard = sounds[0].end - sounds[0].begin + sounds[1].end - sounds[1].begin;
    // What the two fades take is heard twice or not at all.
    QVERIFY2(qAbs(heard - 4 * SECOND) <= 500 * MS, qPrintable(QString::number(heard)));
    const qint64 pause = sounds[1].begin - sounds[0].end;
    QVERIFY2(qAbs(pause - 2 * SECOND) <= 500 * MS, qPrintable(QString::number(pause)));
}

void HeardTogether::AMessageTakesOverAtItsTime()
{
    WriteSound(u"long.wav"_s, MediaFiles::Block(10 * SECOND, MUSIC));
    WriteSound(u"short.wav"_s, MediaFiles::Block(SECOND, 2 * MUSIC));
    QVERIFY(StartPlayer());
    const qint64 due_ms = MomentAhead_ms(4000);
    QCOMPARE(Client().PlayFile(u"long.wav"_s), 0);
    QVERIFY(WaitUntil([&] { return !Hearing().Sounds().empty(); }));
    QCOMPARE(Client().PlayFile(u"short.wav"_s, TimeText(due_ms)), 0);
    QVERIFY(Client().WaitForSignal(u"PlayFileCompleted long.wav"_s));
    QVERIFY(Client().WaitForSignal(u"PlayFileCompleted short.wav"_s));
    QVERIFY(WaitForSounds(1));
    const Ear::Heard both = Hearing().Sounds()[0];
    const qint64 due = both.begin + std::llround((static_cast<double>(due_ms) - both.at_ms) * MS);
    QVERIFY(IsAbout(LevelAt(due, -100), MUSIC));
    QVERIFY2(IsAbout(LevelAt(due, 300), 2 * MUSIC), qPrintable(QString::number(LevelAt(due, 300))));
    // It ends a second behind its moment, to the sample: so it began at its moment.
    const double error_ms = static_cast<double>(both.end - due - SECOND) / MS;
    QVERIFY2(qAbs(error_ms) < EXACT_MS, qPrintable(QString::number(error_ms)));
    QCOMPARE(Client().Signals().size(), 2);
}

void HeardTogether::AVolumeAheadLeavesWhatPlaysAlone()
{
    WriteSound(u"first.wav"_s, MediaFiles::Block(5 * SECOND, MUSIC));
    WriteSound(u"second.wav"_s, MediaFiles::Block(SECOND, MUSIC));
    QVERIFY(StartPlayer());
    QCOMPARE(Client().PlayFile(u"first.wav"_s), 0);
    QVERIFY(WaitUntil([&] { return !Hearing().Sounds().empty(); }));
    const qint64 due_ms = MomentAhead_ms(6000);
    QCOMPARE(Client().Call("SetPlayerVolume", {u"file"_s, 50.0}), 0);
    QCOMPARE(Client().PlayFile(u"second.wav"_s, TimeText(due_ms)), 0);
    QVERIFY(WaitForSounds(2));
    const std::vector<Ear::Heard> sounds = Hearing().Sounds();
    QVERIFY(IsAbout(Hearing().Level(sounds[0].begin + 100 * MS, sounds[0].end - 100 * MS), MUSIC));
    const double level = Hearing().Level(sounds[1].begin + 100 * MS, sounds[1].end - 100 * MS);
    QVERIFY2(IsAbout(level, 0.5 * MUSIC), qPrintable(QString::number(level)));
    // With no request behind it, it changes what plays.
    QCOMPARE(Client().PlayFile(u"first.wav"_s), 0);
    QVERIFY(WaitUntil([&] { return Hearing().Sounds().size() == 3; }));
    QCOMPARE(Client().Call("SetPlayerVolume", {u"file"_s, 25.0}), 0);
    QVERIFY(WaitForSounds(3));
    const Ear::Heard third = Hearing().Sounds()[2];
    const double last = LevelAt(third.end, -200);
    QVERIFY2(IsAbout(last, 0.25 * MUSIC), qPrintable(QString::number(last)));
}

void HeardTogether::VolumesAreKeptOverARestart()
{
    WriteSound(u"first.wav"_s, MediaFiles::Block(SECOND, MUSIC));
    QVERIFY(StartPlayer());
    QCOMPARE(Client().Call("SetMasterVolume", {50.0}), 0);
    QCOMPARE(Client().PlayFile(u"first.wav"_s), 0);
    QVERIFY(WaitForSounds(1));
    QCOMPARE(StopPlayer(), 0);
    QVERIFY(Bus().WaitForService(PlayerClient::SERVICE, false));
    MakePlayer();
    QVERIFY(StartPlayer());
    QCOMPARE(Client().PlayFile(u"first.wav"_s), 0);
    QVERIFY(WaitForSounds(2));
    for (const Ear::Heard& sound : Hearing().Sounds())
        QVERIFY(IsAbout(Hearing().Level(sound.begin + 50 * MS, sound.end - 50 * MS), 0.5 * MUSIC));
}

OZNA_CASE(HeardTogether, HeardTogether)
#include "tst_HeardTogether.moc"

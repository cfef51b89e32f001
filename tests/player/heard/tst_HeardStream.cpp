#include "HeardTest.h"
#include "Rows.h"
#include "StreamServer.h"
#include "Suite.h"
#include "ear/Gong.h"

#include <QUrl>

using namespace Qt::StringLiterals;

// A stream is told when it begins to sound, and once when it has ended, however that came.
class HeardStream : public HeardTest
{
    Q_OBJECT
private Q_SLOTS:
    void ItIsToldWithItsFirstSound_data();
    void ItIsToldWithItsFirstSound();
    void AskedForAgainItHasNoGap();
    void ItEndsByItself();
    void AKilledServerEndsIt();
    void AServerThatHangsEndsIt();
    void AServerThatComesBackGoesOn();
    void NobodyServes();
    void AMessageSoundsOverIt();
    void WhatIsNoAddressIsRefused();

private:
    [[nodiscard]] int PlayStream(const QString& address) { return Client().Call("PlayStream", {address, 0U}); }
    // Starts the player, and the stream in it, until it is heard.
    [[nodiscard]] bool Hear(const StreamServer& server);
    // In any text of the player's about the stream.
    void ExpectWordsOf(const QString& address) { Expect({address, u"stream"_s, u"Stream"_s}); }
};

namespace
{

const QString BEGUN = u"StreamEnabled true"_s;
const QString ENDED = u"StreamEnabled false"_s;
constexpr qint64 SECOND = Pcm::RATE;

} // namespace

bool HeardStream::Hear(const StreamServer& server)
{
    return StartPlayer() && PlayStream(server.Address()) == 0 && Client().WaitForSignal(BEGUN) &&
           WaitUntil([this] { return !Hearing().Sounds().empty(); });
}

void HeardStream::ItIsToldWithItsFirstSound_data()
{
    Rows<QString>::Add({{"rtsp", u"rtsp"_s}, {"http", u"http"_s}});
}

void HeardStream::ItIsToldWithItsFirstSound()
{
    const StreamServer server(Rows<QString>::Current());
    QVERIFY(Hear(server));
    const qint64 begin = Hearing().Sounds()[0].begin;
    QVERIFY(WaitUntil([&] { return Hearing().Frames() > begin + 4 * SECOND; }));
    // No hole is in it, once it runs.
    QCOMPARE(Hearing().Sounds().size(), size_t{1});
    const double level = Hearing().Level(begin + SECOND, begin + 3 * SECOND);
    QVERIFY2(qAbs(level - 0.25) < 0.01, qPrintable(QString::number(level)));
    QCOMPARE(Client().Signals(), QStringList{BEGUN});
    QCOMPARE(Client().Call("StopPlay", {u"stream"_s, QString()}), 0);
    QVERIFY(Client().WaitForSignal(ENDED));
    QVERIFY(WaitForSounds(1));
    QCOMPARE(Client().Signals(), (QStringList{BEGUN, ENDED}));
}

void HeardStream::AskedForAgainItHasNoGap()
{
    const StreamServer server(u"rtsp"_s);
    QVERIFY(StartPlayer());
    QCOMPARE(PlayStream(server.Address()), 0);
    QVERIFY(Client().WaitForSignal(BEGUN));
    QVERIFY(WaitUntil([&] { return !Hearing().Sounds().empty(); }));
    const qint64 begin = Hearing().Sounds()[0].begin;
    QVERIFY(WaitUntil([&] { return Hearing().Frames() > begin + SECOND; }));
    QCOMPARE(PlayStream(server.Address()), 0);
    QVERIFY(Client().WaitForSignal(BEGUN, 2));
    QVERIFY(WaitUntil([&] { return Hearing().Frames() > begin + 4 * SECOND; }));
    QCOMPARE(Hearing().Sounds().size(), size_t{1});
    QVERIFY(qAbs(Hearing().Level(begin + SECOND, begin + 3 * SECOND) - 0.25) < 0.01);
    QCOMPARE(Client().Signals(), (QStringList{BEGUN, ENDED, BEGUN}));
}

void HeardStream::ItEndsByItself()
{
    const StreamServer server(u"rtsp"_s, 3);
    QVERIFY(StartPlayer());
    QCOMPARE(PlayStream(server.Address()), 0);
    QVERIFY(Client().WaitForSignal(ENDED, 1, 40'000));
    QCOMPARE(Client().Signals().constFirst(), BEGUN);
    QCOMPARE(Client().Signals().count(ENDED), 1);
    const Ear::Heard sound = Hearing().Sounds()[0];
    QVERIFY2(sound.end - sound.begin > 2 * SECOND, qPrintable(QString::number(sound.end - sound.begin)));
    ExpectWordsOf(server.Address());
}

void HeardStream::AKilledServerEndsIt()
{
    StreamServer server(u"rtsp"_s);
    QVERIFY(Hear(server));
    server.Kill();
    // Three tries take up to 10 s.
    QVERIFY(Client().WaitForSignal(ENDED, 1, 15'000));
    Pause(500);
    QCOMPARE(Client().Signals().count(ENDED), 1);
    // The player is as it was: a message sounds at its second.
    WriteSound(u"gong.wav"_s, Gong::Samples(300));
    QVERIFY(WaitForSounds(1));
    const size_t before = Hearing().EndedCount();
    const qint64 due_ms = MomentAhead_ms(2000);
    QCOMPARE(Client().PlayFile(u"gong.wav"_s, TimeText(due_ms)), 0);
    QVERIFY(WaitForSounds(before + 1));
    QVERIFY(qAbs(Hearing().Sounds().back().at_ms - static_cast<double>(due_ms)) < EXACT_MS);
    ExpectWordsOf(server.Address());
}

// Nothing tells this break but silence: connections stay, and nothing comes any more.
void HeardStream::AServerThatHangsEndsIt()
{
    StreamServer server(u"rtsp"_s);
    QVERIFY(Hear(server));
    server.Hang();
    // Silence for 5 s is a break, three tries take up to 10 s.
    QVERIFY(Client().WaitForSignal(ENDED, 1, 25'000));
    // What recovers now has ended.
    server.GoOn();
    const size_t before = Hearing().EndedCount();
    Pause(2000);
    QCOMPARE(Hearing().EndedCount(), before);
    QCOMPARE(Client().Signals(), (QStringList{BEGUN, ENDED}));
    ExpectWordsOf(server.Address());
}

void HeardStream::AServerThatComesBackGoesOn()
{
    StreamServer server(u"rtsp"_s);
    QVERIFY(Hear(server));
    server.Kill();
    const StreamServer again(u"rtsp"_s, 0, QUrl(server.Address()).port());
    // It is heard anew: either the silence was too short to end the sound, or there is another sound.
    const qint64 killed = Hearing().Frames();
    QVERIFY(WaitUntil([&] { return Hearing().Sounds().back().end > killed + 5 * SECOND; }));
    QCOMPARE(Client().Signals().count(ENDED), 0);
    ExpectWordsOf(server.Address());
}

void HeardStream::NobodyServes()
{
    QString address;
    {
        const StreamServer server(u"rtsp"_s);
        address = server.Address();
    }
    QVERIFY(StartPlayer());
    QCOMPARE(PlayStream(address), 0);
    QVERIFY(Client().WaitForSignal(ENDED, 1, 30'000));
    QCOMPARE(Client().Signals(), QStringList{ENDED});
    QVERIFY(!Player().Log(2).isEmpty());
    ExpectWordsOf(address);
}

void HeardStream::AMessageSoundsOverIt()
{
    const StreamServer server(u"rtsp"_s);
    WriteSound(u"quiet.wav"_s, std::vector<Pcm::Sample>(2 * SECOND * Pcm::CHANNELS));
    WriteSound(u"gong.wav"_s, MediaFiles::Block(SECOND, 0.6));
    QVERIFY(StartPlayer());
    QCOMPARE(PlayStream(server.Address()), 0);
    QVERIFY(Client().WaitForSignal(BEGUN));
    const qint64 due_ms = MomentAhead_ms(3000);
    QCOMPARE(Client().PlayFile(u"quiet.wav"_s, TimeText(due_ms)), 0);
    QVERIFY(Client().WaitForSignal(u"PlayFileCompleted quiet.wav"_s));
    const Ear::Heard stream = Hearing().Sounds()[0];
    const qint64 due = stream.begin + std::llround((static_cast<double>(due_ms) - stream.at_ms) * Pcm::RATE / 1000);
    const double level = Hearing().Level(due + SECOND / 2, due + SECOND);
    QVERIFY2(qAbs(level - 0.05) < 0.005, qPrintable(QString::number(level)));
    QVERIFY(qAbs(Hearing().Level(due - SECOND / 2, due - SECOND / 4) - 0.25) < 0.01);
}

void HeardStream::WhatIsNoAddressIsRefused()
{
    QVERIFY(StartPlayer());
    for (const QString& address : {QString(), u"no address"_s, u"file:///etc/passwd"_s, u"rtsp://"_s})
        QVERIFY2(PlayStream(address) > 0, qPrintable(address));
    Pause(300);
    QCOMPARE(Client().Signals(), QStringList());
    Expect({u"address"_s, u"PlayStream"_s, u"stream"_s, u"file:"_s, u"rtsp:"_s});
}

OZNA_CASE(HeardStream, HeardStream)
#include "tst_HeardStream.moc"

#include "HeardTest.h"
#include "ProcessMemory.h"
#include "StreamServer.h"
#include "Suite.h"
#include "ear/Gong.h"

#include <QElapsedTimer>
#include <QRandomGenerator>

using namespace Qt::StringLiterals;

// Each request that was accepted is ended by its signal, once, and none takes memory that is not given back.
class HeardRequests : public HeardTest
{
    Q_OBJECT
public:
    // A long run takes longer than the library lets a test function take.
    static void initMain();

private Q_SLOTS:
    void AThousandOneAfterTheOther();
    void AsManyAsMayWait();
    void AnyInAnyOrder();

protected:
    void Begin() override;

private:
    // A name of its own for each request, of the one sound that there is.
    [[nodiscard]] QString NewFile();
    [[nodiscard]] QString NewPlaylist();
    void AskAtRandom(const QString& address);
    [[nodiscard]] long Held(const char* what) { return MemoryKilobytes(Player().Pid(), what); }
    void Accept(int status, const QString& end);
    [[nodiscard]] bool AllHaveEnded() const;
    // What an accepted request is still owed, or has got too often; empty when all is well.
    [[nodiscard]] QString WhatIsWrong() const;

    QHash<QString, qsizetype> m_owed; // how often each signal has to come
    QRandomGenerator m_random;
    int m_names = 0;
    int m_accepted = 0;
    int m_refused = 0;
};

namespace
{

const QString STREAM_ENDED = u"StreamEnabled false"_s;
// Far less than what thousands of sources hold. A sanitizer keeps what is given back for a while.
constexpr long GROWTH_KB = OZNA_SANITIZED ? 300'000 : 20'000;

int Length_s()
{
    const int wanted_s = qEnvironmentVariableIntValue("OZNA_RANDOM_S");
    return wanted_s > 0 ? wanted_s : 20;
}

} // namespace

void HeardRequests::initMain()
{
    constexpr int ROOM_S = 280;
    static_cast<void>(::qputenv("QTEST_FUNCTION_TIMEOUT", QByteArray::number((Length_s() + ROOM_S) * 1000)));
}

void HeardRequests::Begin()
{
    m_owed.clear();
    // The order of an earlier run is run again by its number.
    const quint32 seed = qEnvironmentVariableIsSet("OZNA_SEED") ? qEnvironmentVariable("OZNA_SEED").toUInt()
                                                                : QRandomGenerator::global()->generate();
    qInfo("OZNA_SEED=%u", seed);
    m_random.seed(seed);
    m_names = m_accepted = m_refused = 0;
}

QString HeardRequests::NewFile()
{
    const QString name = u"gong%1.wav"_s.arg(++m_names);
    if (!QFile::link(MediaPath(u"gong.wav"_s), MediaPath(name)))
        qFatal("cannot link %s", qPrintable(name));
    return name;
}

QString HeardRequests::NewPlaylist()
{
    const QString name = u"list%1"_s.arg(++m_names);
    WritePlaylist(name, "gong.wav;1\nrubbish.wav;1\ngong.wav;1\n");
    return name;
}

void HeardRequests::Accept(int status, const QString& end)
{
    ++(status == 0 ? m_accepted : m_refused);
    if (status == 0)
        ++m_owed[end];
}

bool HeardRequests::AllHaveEnded() const
{
    return WhatIsWrong().isEmpty();
}

QString HeardRequests::WhatIsWrong() const
{
    QHash<QString, qsizetype> come;
    for (const QString& signal : Client().Signals())
        ++come[signal];
    come.remove(u"StreamEnabled true"_s);
    if (come == m_owed)
        return {};
    for (auto owed = m_owed.begin(); owed != m_owed.end(); ++owed)
    {
        if (come.value(owed.key()) != owed.value())
            return u"%1: %2 times instead of %3"_s.arg(owed.key()).arg(come.value(owed.key())).arg(owed.value());
    }
    for (auto signal = come.begin(); signal != come.end(); ++signal)
    {
        if (!m_owed.contains(signal.key()))
            return u"%1: %2 times, and none was owed"_s.arg(signal.key()).arg(signal.value());
    }
    return u"a difference that nobody expects"_s;
}

void HeardRequests::AThousandOneAfterTheOther()
{
    WriteSound(u"gong.wav"_s, Gong::Samples(300));
    QVERIFY(StartPlayer());
    // They come faster than the threads that play them end: how many there are at a time differs from run to run.
    QList<long> held_kb;
    for (int round = 0; round < 3; ++round)
    {
        for (int i = 0; i < 1000; ++i)
        {
            const QString name = NewFile();
            Accept(Client().PlayFile(name), u"PlayFileCompleted "_s + name);
        }
        QCOMPARE(m_refused, 0);
        QVERIFY2(WaitUntil([&] { return AllHaveEnded(); }), qPrintable(WhatIsWrong()));
        held_kb.append(MemoryKilobytes(Player().Pid(), "VmRSS"));
        qInfo("%ld KB", held_kb.last());
    }
    QVERIFY(held_kb[2] - held_kb[0] < GROWTH_KB);
    Pause(1000);
    QVERIFY2(AllHaveEnded(), qPrintable(WhatIsWrong()));
    QCOMPARE(StopPlayer(), 0);
}

// What waits holds two seconds of sound and the threads of a pipeline; all of it is given back.
void HeardRequests::AsManyAsMayWait()
{
    constexpr int MOST = 64;
    constexpr long WORKERS = 16;
    WriteSound(u"gong.wav"_s, Gong::Samples());
    QVERIFY(StartPlayer());
    QList<long> held_kb;
    QList<long> threads;
    for (int round = 0; round < 3; ++round)
    {
        const QString time = TimeText(MomentAhead_ms(100'000));
        for (int i = 0; i < MOST; ++i)
        {
            const QString name = NewFile();
            Accept(Client().PlayFile(name, time), u"PlayFileCompleted "_s + name);
        }
        QCOMPARE(m_refused, 0);
        qInfo("%d wait: %ld KB, %ld threads", MOST, Held("VmRSS"), Held("Threads"));
        QCOMPARE(Client().Call("StopPlay", {u"file"_s, QString()}), 0);
        QVERIFY2(WaitUntil([&] { return AllHaveEnded(); }), qPrintable(WhatIsWrong()));
        Pause(1000);
        held_kb.append(Held("VmRSS"));
        threads.append(Held("Threads"));
        qInfo("none waits: %ld KB, %ld threads", held_kb.last(), threads.last());
    }
    QVERIFY(held_kb[2] - held_kb[0] < GROWTH_KB);
    // Those that open sources are made as they are needed.
    QVERIFY(threads[2] <= threads[0] + WORKERS);
    QCOMPARE(StopPlayer(), 0);
}

void HeardRequests::AskAtRandom(const QString& address)
{
    PlayerClient& client = Client();
    // At once, or within seconds.
    const int ahead_ms = m_random.bounded(5) * 1000;
    const QString time = ahead_ms == 0 ? QString() : TimeText(QDateTime::currentMSecsSinceEpoch() + ahead_ms);
    const QString source = QStringList{u"file"_s, u"playlist"_s, u"stream"_s}[m_random.bounded(3)];
    switch (m_random.bounded(8))
    {
    case 0:
    case 1:
    case 2: {
        const QString name = NewFile();
        return Accept(client.PlayFile(name, time), u"PlayFileCompleted "_s + name);
    }
    case 3: {
        const QString name = NewPlaylist();
        const uint first = 1 + static_cast<uint>(m_random.bounded(4));
        return Accept(client.PlayPlaylist(name, u"p1"_s, first, time), u"PlayPlaylistCompleted "_s + name);
    }
    case 4: return Accept(client.Call("PlayStream", {address, 0U}), STREAM_ENDED);
    case 5: static_cast<void>(client.Call("StopPlay", {source, m_random.bounded(2) ? QString() : u"p1"_s})); return;
    case 6:
        static_cast<void>(client.Call("SetPlayerVolume", {source, static_cast<double>(m_random.bounded(101))}));
        return;
    default:
        // What is refused owes nothing.
        return Accept(client.PlayFile(m_random.bounded(2) ? u"rubbish.wav"_s : u"none.wav"_s, time), u"nothing"_s);
    }
}

void HeardRequests::AnyInAnyOrder()
{
    const int length_s = Length_s();
    WriteSound(u"gong.wav"_s, Gong::Samples(700));
    WriteFile(MediaPath(u"rubbish.wav"_s), QByteArray(4000, 'x'));
    const StreamServer server(u"rtsp"_s);
    QVERIFY(StartPlayer());
    QElapsedTimer timer;
    timer.start();
    long warm_kb = 0;
    while (!timer.hasExpired(length_s * 1000LL))
    {
        AskAtRandom(server.Address());
        Pause(m_random.bounded(300));
        if (warm_kb == 0 && timer.hasExpired(length_s * 300LL))
            warm_kb = MemoryKilobytes(Player().Pid(), "VmRSS");
    }
    const long end_kb = MemoryKilobytes(Player().Pid(), "VmRSS");
    for (const QString& source : {u"file"_s, u"stream"_s})
        static_cast<void>(Client().Call("StopPlay", {source, QString()}));
    static_cast<void>(Client().Call("StopPlay", {u"playlist"_s, u"p1"_s}));
    QVERIFY2(WaitUntil([&] { return AllHaveEnded(); }, 40'000), qPrintable(WhatIsWrong()));
    Pause(1000);
    QVERIFY2(AllHaveEnded(), qPrintable(WhatIsWrong()));
    qInfo("%d accepted, %d refused; %ld KB after a third of the time, %ld KB at its end", m_accepted, m_refused,
          warm_kb, end_kb);
    QVERIFY(m_accepted > 0 && m_refused > 0);
    QVERIFY(end_kb - warm_kb < GROWTH_KB);
    QCOMPARE(StopPlayer(), 0);
    static_cast<void>(Player().Take());
}

OZNA_CASE(HeardRequests, HeardRequests)
#include "tst_HeardRequests.moc"

#include "Rows.h"
#include "Suite.h"
#include "UnitTest.h"
#include "peers/PeerWaits.h"

using namespace Qt::StringLiterals;

namespace
{

const QString SOUND = u"sound"_s;
const QString PHOTO = u"photo"_s;

} // namespace

// What is kept of the waits for peers. Moments are milliseconds of the uptime.
class PeerWaitsTest final : public UnitTest
{
    Q_OBJECT
private Q_SLOTS:
    void NobodyWasWaitedForAtFirst();
    void WaitsThatFollowEachOtherCountAsOne();
    void AShortWaitIsNotKept();
    void TheLatestWaitsAreKept();
    void TheLongestWaitIsThatWithinTheSpan_data();
    void TheLongestWaitIsThatWithinTheSpan();
    void AWaitThroughoutHasNoBreak();

private:
    void Begin() override { PeerWaits::Clear(); }
    void End() override { PeerWaits::Clear(); }
};

void PeerWaitsTest::NobodyWasWaitedForAtFirst()
{
    PeerWaits::Note(SOUND, 0, 5000);
    QCOMPARE(PeerWaits::Longest(0, 5000), SOUND);
    PeerWaits::Clear();
    QCOMPARE(PeerWaits::Longest(0, 5000), QString());
    QCOMPARE(PeerWaits::Throughout(0, 5000), QString());
}

void PeerWaitsTest::WaitsThatFollowEachOtherCountAsOne()
{
    // At once, with a short pause, with a longer one, and for another peer.
    for (const auto& [next, pause_ms, throughout] :
         {std::tuple(SOUND, 0, SOUND), {SOUND, 20, SOUND}, {SOUND, 21, QString()}, {PHOTO, 0, QString()}})
    {
        PeerWaits::Clear();
        PeerWaits::Note(SOUND, 0, 600);
        PeerWaits::Note(next, 600 + pause_ms, 1300);
        QCOMPARE(PeerWaits::Throughout(0, 1300), throughout);
    }
}

void PeerWaitsTest::AShortWaitIsNotKept()
{
    PeerWaits::Note(SOUND, 0, 19);
    QCOMPARE(PeerWaits::Throughout(0, 19), QString());
    PeerWaits::Note(PHOTO, 100, 120);
    QCOMPARE(PeerWaits::Throughout(100, 120), PHOTO);
}

void PeerWaitsTest::TheLatestWaitsAreKept()
{
    constexpr int MOST = 64;
    for (int i = 0; i <= MOST; ++i)
        PeerWaits::Note(QString::number(i), i * 1000, i * 1000 + 500);
    QCOMPARE(PeerWaits::Throughout(0, 500), QString());
    for (int i = 1; i <= MOST; ++i)
        QCOMPARE(PeerWaits::Throughout(i * 1000, i * 1000 + 500), QString::number(i));
}

void PeerWaitsTest::TheLongestWaitIsThatWithinTheSpan_data()
{
    Rows<int, int, QString>::Add({
        {"the longer of two, which is the earlier", 0, 20'000, SOUND},
        {"the end of the one is shorter than the other", 4000, 20'000, PHOTO},
        {"the begin of the other is shorter than the one", 3000, 7500, SOUND},
        {"a second", 4000, 6000, SOUND},
        {"less than a second", 4001, 6000, {}},
        {"neither", 5000, 6000, {}},
    });
}

void PeerWaitsTest::TheLongestWaitIsThatWithinTheSpan()
{
    const auto& [from_ms, to_ms, longest] = Rows<int, int, QString>::Current();
    PeerWaits::Note(SOUND, 0, 5000);
    PeerWaits::Note(PHOTO, 6000, 9000);
    QCOMPARE(PeerWaits::Longest(from_ms, to_ms), longest);
}

void PeerWaitsTest::AWaitThroughoutHasNoBreak()
{
    PeerWaits::Note(SOUND, 1000, 2000);
    QCOMPARE(PeerWaits::Throughout(1000, 2000), SOUND);
    QCOMPARE(PeerWaits::Throughout(999, 2000), QString());
    QCOMPARE(PeerWaits::Throughout(1000, 2001), QString());
}

OZNA_CASE(PeerWaits, PeerWaitsTest)
#include "tst_PeerWaits.moc"

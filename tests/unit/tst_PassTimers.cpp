#include "PassTimers.h"
#include "Suite.h"
#include "UnitTest.h"

#include <QTimerEvent>

using namespace Qt::StringLiterals;

// When the passes are called, by a clock that stands still until the test moves it: the test fires the timers itself.
class PassTimersTest final : public UnitTest
{
    Q_OBJECT
private Q_SLOTS:
    void WhatIsNotWatchedWakesNobody();
    void AnEarlyPassFollowsAFarOneWhileAnythingIsWatched();
    void TheNextTickFallsOnTheNextFifth_data();
    void TheNextTickFallsOnTheNextFifth();
    void AfterAStepOrAHeldLoopTheTicksAreOnTheFifthsAgain();
    void WhereBothAreDueTheFarPassComesFirst();
    void AStopEndsBoth();
    void APassThatStopsTheTimersSetsNone();

private:
    void Begin() override;
    static void Fire(QTimer& timer);

    // The time of the next early tick, in milliseconds of its second.
    [[nodiscard]] int NextTick()
    {
        return static_cast<int>((Time().Utc_ms() + m_timers->m_earlyTimer.interval()) % 1000);
    }

    std::optional<PassTimers> m_timers;
    QStringList m_passes;
    bool m_isWatching = false;
};

void PassTimersTest::Begin()
{
    m_passes.clear();
    m_isWatching = false;
    m_timers.emplace();
    m_timers->SetUp({[this] { m_passes.append(u"far"_s); }, [this] { m_passes.append(u"early"_s); },
                     [this] { return m_isWatching; }});
    m_timers->Start();
}

// As the loop does when the timer is due.
void PassTimersTest::Fire(QTimer& timer)
{
    QVERIFY(timer.isActive());
    QTimerEvent event(timer.timerId());
    QVERIFY(QCoreApplication::sendEvent(&timer, &event));
}

void PassTimersTest::WhatIsNotWatchedWakesNobody()
{
    QVERIFY(!m_timers->m_earlyTimer.isActive());
    Fire(m_timers->m_farTimer);
    QCOMPARE(m_passes, QStringList(u"far"_s));
    QVERIFY(!m_timers->m_earlyTimer.isActive());
}

void PassTimersTest::AnEarlyPassFollowsAFarOneWhileAnythingIsWatched()
{
    m_isWatching = true;
    Fire(m_timers->m_farTimer);
    QCOMPARE(m_passes, (QStringList{u"far"_s, u"early"_s}));
    Fire(m_timers->m_earlyTimer);
    QCOMPARE(m_passes, (QStringList{u"far"_s, u"early"_s, u"early"_s}));
    QVERIFY(m_timers->m_earlyTimer.isActive());
    m_isWatching = false;
    Fire(m_timers->m_farTimer);
    QVERIFY(!m_timers->m_earlyTimer.isActive());
}

void PassTimersTest::TheNextTickFallsOnTheNextFifth_data()
{
    QTest::addColumn<int>("now_ms"); // of the second
    QTest::addColumn<int>("wait_ms");
    QTest::newRow("on the second") << 0 << 200;
    QTest::newRow("right after it") << 1 << 199;
    QTest::newRow("right before a fifth, as a tick that came too soon") << 199 << 1;
    QTest::newRow("on a fifth") << 200 << 200;
    QTest::newRow("between two") << 470 << 130;
    QTest::newRow("right before the next second") << 999 << 1;
    QTest::newRow("before 1970") << -1 << 1;
}

void PassTimersTest::TheNextTickFallsOnTheNextFifth()
{
    QFETCH(int, now_ms);
    QFETCH(int, wait_ms);
    Time().SetUtc_ms(now_ms);
    m_isWatching = true;
    Fire(m_timers->m_farTimer);
    QCOMPARE(m_timers->m_earlyTimer.interval(), wait_ms);
    Fire(m_timers->m_earlyTimer);
    QCOMPARE(m_timers->m_earlyTimer.interval(), wait_ms);
    QCOMPARE(m_timers->m_earlyTimer.timerType(), Qt::PreciseTimer);
}

void PassTimersTest::AfterAStepOrAHeldLoopTheTicksAreOnTheFifthsAgain()
{
    m_isWatching = true;
    Time().SetUtc_ms(1'000'070);
    Fire(m_timers->m_farTimer);
    QCOMPARE(NextTick(), 200);
    // What passes until the next tick: a fifth, a late tick, a call that held the loop, and steps of the calendar.
    for (const int passed_ms : {130, 217, 1834, -3'599'950, 86'399'903})
    {
        Time().SetUtc_ms(Time().Utc_ms() + passed_ms);
        Fire(m_timers->m_earlyTimer);
        QCOMPARE(NextTick() % 200, 0);
        QVERIFY(m_timers->m_earlyTimer.interval() > 0);
        QVERIFY(m_timers->m_earlyTimer.interval() <= 200);
    }
}

void PassTimersTest::WhereBothAreDueTheFarPassComesFirst()
{
    m_isWatching = true;
    Fire(m_timers->m_farTimer);
    m_passes.clear();
    m_timers->m_earlyTimer.start(1);
    m_timers->m_farTimer.start(2);
    // Nothing runs meanwhile: the early tick is the older one then.
    QTest::qSleep(10);
    QTRY_VERIFY(m_passes.size() >= 2);
    QCOMPARE(m_passes.first(2), (QStringList{u"far"_s, u"early"_s}));
}

void PassTimersTest::AStopEndsBoth()
{
    m_isWatching = true;
    Fire(m_timers->m_farTimer);
    QVERIFY(m_timers->m_earlyTimer.isActive());
    m_timers->Stop();
    QVERIFY(!m_timers->m_farTimer.isActive());
    QVERIFY(!m_timers->m_earlyTimer.isActive());
}

void PassTimersTest::APassThatStopsTheTimersSetsNone()
{
    m_timers.emplace();
    m_timers->SetUp({[] {}, [this] { m_timers->Stop(); }, [] { return true; }});
    m_timers->Start();
    Fire(m_timers->m_farTimer);
    QVERIFY(!m_timers->m_farTimer.isActive());
    QVERIFY(!m_timers->m_earlyTimer.isActive());
}

OZNA_CASE(PassTimers, PassTimersTest)
#include "tst_PassTimers.moc"

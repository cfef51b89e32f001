#include "Clock.h"
#include "Suite.h"
#include "engine/RehearsalClock.h"

#include <ctime>

namespace
{

constexpr qint64 START_MS = 1715774400000; // 2024-05-15, 12:00:00 UTC
constexpr qint64 PERIOD_MS = 3000;

} // namespace

// Time in a rehearsal: it passes, is stepped, and moves the scheduler's timers.
class RehearsalClockTest final : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void TimePassesAndNeverRunsBack();
    void AStepMovesTheCalendarAlone();
    void TimersFollowTheTimeThatPasses();
    void TicksOfTheWallClockFollowTheCalendar();
    void TimersThatAreStartedAnewBeginThere();
    void TheSystemsClocksComeBack();
};

void RehearsalClockTest::TimePassesAndNeverRunsBack()
{
    RehearsalClock clock(START_MS);
    clock.Pass(1500);
    QCOMPARE(clock.Now_ms(), START_MS + 1500);
    clock.PassTo(START_MS + 1000);
    QCOMPARE(clock.Now_ms(), START_MS + 1500);
    clock.PassTo(START_MS + 2000);
    QCOMPARE(clock.Now_ms(), START_MS + 2000);
    QCOMPARE(Clock::Now(), START_MS / 1000 + 2);
}

void RehearsalClockTest::AStepMovesTheCalendarAlone()
{
    RehearsalClock clock(START_MS);
    const std::int64_t uptime_ms = Clock::Uptime_ms();
    for (const qint64 step_ms : {60'000, -90'000})
    {
        clock.Step(step_ms);
        QCOMPARE(Clock::Uptime_ms(), uptime_ms);
    }
    QCOMPARE(clock.Now_ms(), START_MS - 30'000);
    clock.Pass(10);
    QCOMPARE(Clock::Uptime_ms(), uptime_ms + 10);
    // Ten seconds after the start the calendar shows what has been stepped as well.
    QCOMPARE(clock.After_ms(10'000), START_MS - 20'000);
}

void RehearsalClockTest::TimersFollowTheTimeThatPasses()
{
    RehearsalClock clock(START_MS);
    QCOMPARE(clock.TickFrom(START_MS, PERIOD_MS), START_MS + PERIOD_MS);
    QCOMPARE(clock.TickFrom(START_MS + 1, PERIOD_MS), START_MS + PERIOD_MS);
    QCOMPARE(clock.TickFrom(START_MS + PERIOD_MS, PERIOD_MS), START_MS + PERIOD_MS);
    QCOMPARE(clock.TickFrom(START_MS + PERIOD_MS + 1, PERIOD_MS), START_MS + 2 * PERIOD_MS);
    clock.Step(1100);
    QCOMPARE(clock.TickFrom(clock.Now_ms(), PERIOD_MS), START_MS + 1100 + PERIOD_MS);
    clock.Pass(PERIOD_MS);
    QVERIFY(clock.IsTick(PERIOD_MS));
}

void RehearsalClockTest::TicksOfTheWallClockFollowTheCalendar()
{
    constexpr qint64 FIFTH_MS = 200;
    RehearsalClock clock(START_MS);
    QCOMPARE(clock.WallTickFrom(START_MS, FIFTH_MS), START_MS + FIFTH_MS);
    QCOMPARE(clock.WallTickFrom(START_MS + FIFTH_MS, FIFTH_MS), START_MS + FIFTH_MS);
    QCOMPARE(clock.WallTickFrom(START_MS + FIFTH_MS + 1, FIFTH_MS), START_MS + 2 * FIFTH_MS);
    clock.Step(1070);
    QCOMPARE(clock.WallTickFrom(clock.Now_ms(), FIFTH_MS), START_MS + 1200);
    clock.Pass(10);
    clock.StartTimers();
    QCOMPARE(clock.WallTickFrom(clock.Now_ms(), FIFTH_MS), START_MS + 1200);
}

void RehearsalClockTest::TimersThatAreStartedAnewBeginThere()
{
    RehearsalClock clock(START_MS);
    clock.Pass(700);
    clock.StartTimers();
    QCOMPARE(clock.TickFrom(clock.Now_ms(), PERIOD_MS), START_MS + 700 + PERIOD_MS);
    clock.Pass(PERIOD_MS - 700);
    QVERIFY(!clock.IsTick(PERIOD_MS));
}

void RehearsalClockTest::TheSystemsClocksComeBack()
{
    {
        const RehearsalClock clock(START_MS);
        QCOMPARE(Clock::Now(), START_MS / 1000);
    }
    const std::time_t before = std::time(nullptr);
    QVERIFY(Clock::Now() >= before);
    QVERIFY(Clock::Now() <= std::time(nullptr) + 1);
}

OZNA_CASE(RehearsalClock, RehearsalClockTest)
#include "tst_RehearsalClock.moc"

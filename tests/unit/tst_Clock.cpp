#include "Clock.h"
#include "Rows.h"
#include "Suite.h"
#include "TimeZone.h"
#include "UnitTest.h"

#include <QDateTime>

#include <chrono>
#include <limits>

using namespace Qt::StringLiterals;

class ClockTest final : public UnitTest
{
    Q_OBJECT
private Q_SLOTS:
    void TheSystemClockIsTheDefault();
    void OneMomentHasItsUtcAndItsLocalForm();
    void AChangeOfTimeZoneShowsAtOnce();
    void SecondsToCountFromTheWholeSecond();
    void SecondsToCarryOver_data();
    void SecondsToCarryOver();
    void SecondsSinceAreNeverNegative();
    void AClockFarOffIsNotFatal();
    void ACalendarWithoutAnUptimeCountsIt();
    void AReadingThatWasInterruptedIsMadeAgain();
    void AReadingThatIsInterruptedEachTimeEnds();
};

void ClockTest::TheSystemClockIsTheDefault()
{
    Clock::SetSource({});
    // std::time reads a coarser clock, which may lag behind by a tick.
    const auto systemNow = [] { return std::chrono::system_clock::to_time_t(std::chrono::system_clock::now()); };
    const std::time_t before = systemNow();
    const std::time_t now = Clock::Now();
    const std::time_t after = systemNow();
    QVERIFY(now >= before);
    QVERIFY(now <= after);
}

void ClockTest::OneMomentHasItsUtcAndItsLocalForm()
{
    struct Moment
    {
        const char* zone;
        const char* utc;
        const char* there;
        int weekDay; // 0 Sunday
    };
    const auto parsed = [](const char* text) {
        return QDateTime::fromString(QLatin1StringView(text) + u'Z', Qt::ISODateWithMs);
    };
    for (const Moment& row : {
             Moment{"UTC", "2024-05-15T12:00:00.123", "2024-05-15T12:00:00.123", 3},
             {"Europe/Rome", "2024-05-15T12:00:00", "2024-05-15T14:00:00", 3},
             {"Europe/Rome", "2024-01-15T12:00:00.999", "2024-01-15T13:00:00.999", 1},
             {"Europe/Rome", "2024-05-18T22:00:00", "2024-05-19T00:00:00", 0},
             {"Europe/Rome", "2024-05-18T21:59:59.999", "2024-05-18T23:59:59.999", 6},
             {"America/Los_Angeles", "2024-05-15T03:00:00", "2024-05-14T20:00:00", 2},
             {"America/Los_Angeles", "2024-01-01T07:59:59", "2023-12-31T23:59:59", 0},
             {"Pacific/Auckland", "2024-12-31T11:00:00", "2025-01-01T00:00:00", 3},
             {"Asia/Kathmandu", "2024-05-15T18:15:00", "2024-05-16T00:00:00", 4},
             {"Asia/Kathmandu", "2024-05-15T18:14:59", "2024-05-15T23:59:59", 3},
             {"Australia/Lord_Howe", "2024-01-15T12:00:00", "2024-01-15T23:00:00", 1},
             {"Australia/Lord_Howe", "2024-06-15T12:00:00", "2024-06-15T22:30:00", 6},
             {"UTC", "1969-12-31T23:59:59.999", "1969-12-31T23:59:59.999", 3},
             {"UTC", "1969-12-31T23:59:58", "1969-12-31T23:59:58", 3},
             {"UTC", "1901-01-01T00:00:00.001", "1901-01-01T00:00:00.001", 2},
             {"UTC", "2038-01-19T03:14:08", "2038-01-19T03:14:08", 2},
             {"Europe/Rome", "2040-07-01T22:30:00", "2040-07-02T00:30:00", 1},
             {"UTC", "2106-02-07T06:28:16", "2106-02-07T06:28:16", 0},
             {"UTC", "9999-12-31T23:59:59.999", "9999-12-31T23:59:59.999", 5},
         })
    {
        const QDateTime utc = parsed(row.utc);
        const QDateTime local = parsed(row.there);
        const TimeZone here(row.zone);
        Time().SetUtc_ms(utc.toMSecsSinceEpoch());
        QCOMPARE(Clock::UtcToday(), utc.date());
        QCOMPARE(Clock::LocalToday(), local.date());
        QCOMPARE(Clock::TimeOfDay(), local.time());
        QCOMPARE(Clock::LocalNow().tm_wday, row.weekDay);
        QCOMPARE(Clock::LocalNow().tm_hour, local.time().hour());
        QCOMPARE(std::int64_t{Clock::Now()} * 1000, utc.toMSecsSinceEpoch() - local.time().msec());
    }
}

void ClockTest::AChangeOfTimeZoneShowsAtOnce()
{
    Time().SetUtc(QDate(2024, 5, 15), QTime(12, 0));
    const auto hourIn = [](const char* zone) {
        const TimeZone here(zone);
        return Clock::LocalNow().tm_hour * 100 + Clock::TimeOfDay().hour();
    };
    QCOMPARE(hourIn("Europe/Rome"), 1414);
    QCOMPARE(hourIn("America/Los_Angeles"), 505);
    QCOMPARE(hourIn("UTC"), 1212);
}

void ClockTest::SecondsToCountFromTheWholeSecond()
{
    const QList<std::tuple<QTime, QTime, int>> rows{
        {QTime(12, 0), QTime(12, 0), 0},
        {QTime(12, 0), QTime(12, 0, 1), 1},
        {QTime(12, 0), QTime(11, 59, 59), -1},
        {QTime(12, 0, 0, 1), QTime(12, 0, 1), 1},
        {QTime(12, 0, 0, 999), QTime(12, 0, 1), 1},
        {QTime(12, 0, 0, 999), QTime(12, 0), 0},
        {QTime(11, 59, 59, 999), QTime(12, 0), 1},
        {QTime(0, 0), QTime(23, 59, 59), 86399},
        {QTime(23, 59, 59, 999), QTime(0, 0), -86399},
        {QTime(23, 59, 50), QTime(0, 0, 1), -86389},
    };
    for (const auto& [now, time, seconds] : rows)
    {
        Time().SetLocal(now);
        QCOMPARE(Clock::SecondsTo(time.hour(), time.minute(), time.second()), seconds);
    }
}

void ClockTest::SecondsToCarryOver_data()
{
    constexpr int GREATEST = std::numeric_limits<int>::max();
    constexpr int LEAST = std::numeric_limits<int>::min();
    Rows<QList<int>, int>::Add({
        // It is 12:00:00.
        {"24:00:00 is tomorrow's midnight", {24, 0, 0}, 43200},
        {"25:00:00 is an hour after it", {25, 0, 0}, 46800},
        {"11:60:05 is five seconds past noon", {11, 60, 5}, 5},
        {"11:59:65 is five seconds past noon", {11, 59, 65}, 5},
        {"13:-60:05 is five seconds past noon", {13, -60, 5}, 5},
        {"-1:00:00 is yesterday", {-1, 0, 0}, -46800},
        {"99:99:99", {99, 99, 99}, 99 * 3600 + 99 * 60 + 99 - 43200},
        {"the greatest second", {0, 0, GREATEST}, GREATEST - 43200},
        {"the greatest minute", {0, GREATEST, 0}, GREATEST},
        {"the greatest hour", {GREATEST, 0, 0}, GREATEST},
        {"all three the greatest", {GREATEST, GREATEST, GREATEST}, GREATEST},
        {"the least second", {0, 0, LEAST}, LEAST},
        {"the least minute", {0, LEAST, 0}, LEAST},
        {"the least hour", {LEAST, 0, 0}, LEAST},
        {"all three the least", {LEAST, LEAST, LEAST}, LEAST},
    });
}

void ClockTest::SecondsToCarryOver()
{
    const auto& [parts, seconds] = Rows<QList<int>, int>::Current();
    // Weeks in summer time or out of it would count as well: here there is none.
    const TimeZone here("UTC");
    Time().SetLocal(QTime(12, 0));
    QCOMPARE(Clock::SecondsTo(parts[0], parts[1], parts[2]), seconds);
}

void ClockTest::SecondsSinceAreNeverNegative()
{
    const QList<std::tuple<QTime, QTime, int>> rows{

        {QTime(12, 0), QTime(12, 0), 0},
        {QTime(12, 0, 0, 999), QTime(12, 0), 0},
        {QTime(12, 0, 1), QTime(12, 0), 1},
        {QTime(12, 1), QTime(12, 0), 60},
        {QTime(23, 59, 59, 999), QTime(0, 0), 86399},
        {QTime(0, 0), QTime(0, 0), 0},
        // Later in the day is yesterday's; less than a second ahead counts as the whole day.
        {QTime(11, 59, 59, 999), QTime(12, 0), 86400},
        {QTime(11, 59, 59, 500), QTime(12, 0), 86400},
        {QTime(11, 59, 59, 1), QTime(12, 0), 86400},
        {QTime(11, 59, 59), QTime(12, 0), 86399},
        {QTime(11, 59, 58, 999), QTime(12, 0), 86399},
        {QTime(11, 59, 58), QTime(12, 0), 86398},
        {QTime(0, 0), QTime(23, 59, 59), 1},
        {QTime(0, 0, 0, 999), QTime(23, 59, 59), 2},
        // A time that does not exist counts as midnight.
        {QTime(12, 0), QTime(), 43200},
        {QTime(0, 0), QTime(), 0},
        {QTime(0, 0, 0, 999), QTime(), 0},
        {QTime(23, 59, 59, 999), QTime(), 86399},
    };
    for (const auto& [now, time, seconds] : rows)
    {
        Time().SetLocal(now);
        QCOMPARE(Clock::SecondsSince(time), seconds);
    }
}

void ClockTest::AClockFarOffIsNotFatal()
{
    using Limits = std::numeric_limits<qint64>;
    for (const qint64 now_ms : {Limits::max(), Limits::max() / 2, Limits::min() / 2, Limits::min()})
    {
        Time().SetUtc_ms(now_ms);
        // Seconds are whole ones, rounded down.
        QVERIFY(Clock::Now() <= now_ms / 1000);
        QVERIFY(Clock::Now() >= now_ms / 1000 - 1);
        QCOMPARE(qint64{Clock::TimeOfDay().msec()}, (now_ms % 1000 + 1000) % 1000);
        const int since = Clock::SecondsSince(QTime(12, 0));
        QVERIFY(since >= 0);
        QVERIFY(since <= 86400);
        // Whatever today is, it is the same day at both calls.
        QCOMPARE(Clock::LocalToday(), Clock::LocalToday());
        QCOMPARE(Clock::SecondsTo(12, 0, 1) - Clock::SecondsTo(12, 0, 0), 1);
    }
}

void ClockTest::ACalendarWithoutAnUptimeCountsIt()
{
    Clock::SetSource([] { return 42; });
    QCOMPARE(Clock::Uptime_ms(), 42);
    Clock::SetSource([] { return 42; }, [] { return 7; });
    QCOMPARE(Clock::Uptime_ms(), 7);
}

// Half a second passes between the uptime and the calendar.
void ClockTest::AReadingThatWasInterruptedIsMadeAgain()
{
    std::int64_t uptime_ms = 0;
    std::int64_t late_ms = 500;
    Clock::SetSource([&] { return 86'400'000 + (uptime_ms += std::exchange(late_ms, 0)); }, [&] { return uptime_ms; });
    const Clock::Reading reading = Clock::Read();
    QCOMPARE(reading.uptime_ms, 500);
    QCOMPARE(reading.calendar_ms, 86'400'500);
}

void ClockTest::AReadingThatIsInterruptedEachTimeEnds()
{
    std::int64_t uptime_ms = 0;
    Clock::SetSource([&] { return 0; }, [&] { return uptime_ms += 1000; });
    static_cast<void>(Clock::Read());
    QVERIFY(uptime_ms <= 10'000);
}

OZNA_CASE(Clock, ClockTest)
#include "tst_Clock.moc"

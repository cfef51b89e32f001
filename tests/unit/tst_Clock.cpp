#include "Clock.h"
#include "Rows.h"
#include "Suite.h"
#include "TimeZone.h"
#include "UnitTest.h"

#include <QDateTime>
#include <QTemporaryFile>
#include <QtEndian>

#include <chrono>
#include <limits>

using namespace Qt::StringLiterals;

class ClockTest final : public UnitTest
{
    Q_OBJECT
private Q_SLOTS:
    void TheSystemClockIsTheDefault();
    void OneMomentHasItsUtcAndItsLocalForm_data();
    void OneMomentHasItsUtcAndItsLocalForm();
    void AChangeOfTimeZoneShowsAtOnce();
    void ALeapSecondIsTheLastOfItsMinute();
    void SecondsToCountFromTheWholeSecond_data();
    void SecondsToCountFromTheWholeSecond();
    void SecondsToCarryOver_data();
    void SecondsToCarryOver();
    void SecondsSinceAreNeverNegative_data();
    void SecondsSinceAreNeverNegative();
    void AClockFarOffIsNotFatal_data();
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

void ClockTest::OneMomentHasItsUtcAndItsLocalForm_data()
{
    QTest::addColumn<QByteArray>("zone");
    QTest::addColumn<QDateTime>("utc");
    QTest::addColumn<QDate>("localDate");
    QTest::addColumn<QTime>("localTime");
    QTest::addColumn<int>("weekDay"); // 0 Sunday
    const auto row = [](const char* zone, const QString& utc, const QString& local, int weekDay) {
        const QDateTime moment = QDateTime::fromString(utc + u'Z', Qt::ISODateWithMs);
        const QDateTime parts = QDateTime::fromString(local + u'Z', Qt::ISODateWithMs);
        QTest::addRow("%s in %s", qPrintable(utc), zone)
            << QByteArray(zone) << moment << parts.date() << parts.time() << weekDay;
    };
    row("UTC", u"2024-05-15T12:00:00.123"_s, u"2024-05-15T12:00:00.123"_s, 3);
    row("Europe/Rome", u"2024-05-15T12:00:00"_s, u"2024-05-15T14:00:00"_s, 3);
    row("Europe/Rome", u"2024-01-15T12:00:00.999"_s, u"2024-01-15T13:00:00.999"_s, 1);
    row("Europe/Rome", u"2024-05-18T22:00:00"_s, u"2024-05-19T00:00:00"_s, 0);
    row("Europe/Rome", u"2024-05-18T21:59:59.999"_s, u"2024-05-18T23:59:59.999"_s, 6);
    row("America/Los_Angeles", u"2024-05-15T03:00:00"_s, u"2024-05-14T20:00:00"_s, 2);
    row("America/Los_Angeles", u"2024-01-01T07:59:59"_s, u"2023-12-31T23:59:59"_s, 0);
    row("Pacific/Auckland", u"2024-12-31T11:00:00"_s, u"2025-01-01T00:00:00"_s, 3);
    row("Asia/Kathmandu", u"2024-05-15T18:15:00"_s, u"2024-05-16T00:00:00"_s, 4);
    row("Asia/Kathmandu", u"2024-05-15T18:14:59"_s, u"2024-05-15T23:59:59"_s, 3);
    row("Australia/Lord_Howe", u"2024-01-15T12:00:00"_s, u"2024-01-15T23:00:00"_s, 1);
    row("Australia/Lord_Howe", u"2024-06-15T12:00:00"_s, u"2024-06-15T22:30:00"_s, 6);
    row("UTC", u"1969-12-31T23:59:59.999"_s, u"1969-12-31T23:59:59.999"_s, 3);
    row("UTC", u"1969-12-31T23:59:58"_s, u"1969-12-31T23:59:58"_s, 3);
    row("UTC", u"1901-01-01T00:00:00.001"_s, u"1901-01-01T00:00:00.001"_s, 2);
    row("UTC", u"2038-01-19T03:14:08"_s, u"2038-01-19T03:14:08"_s, 2);
    row("Europe/Rome", u"2040-07-01T22:30:00"_s, u"2040-07-02T00:30:00"_s, 1);
    row("UTC", u"2106-02-07T06:28:16"_s, u"2106-02-07T06:28:16"_s, 0);
    row("UTC", u"9999-12-31T23:59:59.999"_s, u"9999-12-31T23:59:59.999"_s, 5);
}

void ClockTest::OneMomentHasItsUtcAndItsLocalForm()
{
    QFETCH(QByteArray, zone);
    QFETCH(QDateTime, utc);
    QFETCH(QDate, localDate);
    QFETCH(QTime, localTime);
    QFETCH(int, weekDay);
    const TimeZone here(zone);
    Time().SetUtc_ms(utc.toMSecsSinceEpoch());
    QCOMPARE(Clock::UtcToday(), utc.date());
    QCOMPARE(Clock::LocalToday(), localDate);
    QCOMPARE(Clock::TimeOfDay(), localTime);
    QCOMPARE(Clock::LocalNow().tm_wday, weekDay);
    QCOMPARE(Clock::LocalNow().tm_hour, localTime.hour());
    const std::int64_t wholeSecond_ms = utc.toMSecsSinceEpoch() - localTime.msec();
    QCOMPARE(std::int64_t{Clock::Now()} * 1000, wholeSecond_ms);
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

void ClockTest::ALeapSecondIsTheLastOfItsMinute()
{
    // A zone that counts leap seconds, of the kind below "right" in the system's folder; it knows that of 30 June 1972.
    constexpr std::int64_t LEAP_S = 78796800;
    QTemporaryFile zone;
    QVERIFY(zone.open());
    zone.write("TZif"_ba + QByteArray(16, '\0'));
    const auto write = [&zone](std::int32_t number) {
        const std::int32_t bytes = qToBigEndian(number);
        zone.write(reinterpret_cast<const char*>(&bytes), sizeof bytes);
    };
    for (const int count : {0, 0, 1, 0, 1, 4}) // leap seconds, kinds of local time, bytes of their names
        write(count);
    zone.write(QByteArray(6, '\0') + QByteArray("UTC\0", 4));
    write(LEAP_S);
    write(1);
    zone.close();

    const TimeZone here(":" + QFile::encodeName(zone.fileName()));
    Time().SetUtc_ms((LEAP_S - 1) * 1000);
    QCOMPARE(Clock::TimeOfDay(), QTime(23, 59, 59));
    Time().Advance_ms(1250);
    QCOMPARE(Clock::LocalNow().tm_sec, 60);
    QCOMPARE(Clock::TimeOfDay(), QTime(23, 59, 59, 250));
    QCOMPARE(Clock::SecondsSince(QTime(23, 59)), 59);
    Time().Advance_ms(750);
    QCOMPARE(Clock::TimeOfDay(), QTime(0, 0));
}

void ClockTest::SecondsToCountFromTheWholeSecond_data()
{
    QTest::addColumn<QTime>("now");
    QTest::addColumn<QTime>("time");
    QTest::addColumn<int>("seconds");
    const auto row = [](const QTime& now, const QTime& time, int seconds) {
        QTest::addRow("%s to %s", qPrintable(now.toString(Qt::ISODateWithMs)), qPrintable(time.toString()))
            << now << time << seconds;
    };
    row(QTime(12, 0), QTime(12, 0), 0);
    row(QTime(12, 0), QTime(12, 0, 1), 1);
    row(QTime(12, 0), QTime(11, 59, 59), -1);
    row(QTime(12, 0, 0, 1), QTime(12, 0, 1), 1);
    row(QTime(12, 0, 0, 999), QTime(12, 0, 1), 1);
    row(QTime(12, 0, 0, 999), QTime(12, 0), 0);
    row(QTime(11, 59, 59, 999), QTime(12, 0), 1);
    row(QTime(0, 0), QTime(23, 59, 59), 86399);
    row(QTime(23, 59, 59, 999), QTime(0, 0), -86399);
    row(QTime(23, 59, 50), QTime(0, 0, 1), -86389);
}

void ClockTest::SecondsToCountFromTheWholeSecond()
{
    QFETCH(QTime, now);
    QFETCH(QTime, time);
    QFETCH(int, seconds);
    Time().SetLocal(now);
    QCOMPARE(Clock::SecondsTo(time.hour(), time.minute(), time.second()), seconds);
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

void ClockTest::SecondsSinceAreNeverNegative_data()
{
    QTest::addColumn<QTime>("now");
    QTest::addColumn<QTime>("time");
    QTest::addColumn<int>("seconds");
    const auto row = [](const QTime& now, const QTime& time, int seconds) {
        QTest::addRow("%s since %s", qPrintable(now.toString(Qt::ISODateWithMs)),
                      time.isValid() ? qPrintable(time.toString()) : "none")
            << now << time << seconds;
    };
    row(QTime(12, 0), QTime(12, 0), 0);
    row(QTime(12, 0, 0, 999), QTime(12, 0), 0);
    row(QTime(12, 0, 1), QTime(12, 0), 1);
    row(QTime(12, 1), QTime(12, 0), 60);
    row(QTime(23, 59, 59, 999), QTime(0, 0), 86399);
    row(QTime(0, 0), QTime(0, 0), 0);
    // Later in the day is yesterday's; less than a second ahead counts as the whole day.
    row(QTime(11, 59, 59, 999), QTime(12, 0), 86400);
    row(QTime(11, 59, 59, 500), QTime(12, 0), 86400);
    row(QTime(11, 59, 59, 1), QTime(12, 0), 86400);
    row(QTime(11, 59, 59), QTime(12, 0), 86399);
    row(QTime(11, 59, 58, 999), QTime(12, 0), 86399);
    row(QTime(11, 59, 58), QTime(12, 0), 86398);
    row(QTime(0, 0), QTime(23, 59, 59), 1);
    row(QTime(0, 0, 0, 999), QTime(23, 59, 59), 2);
    // A time that does not exist counts as midnight.
    row(QTime(12, 0), QTime(), 43200);
    row(QTime(0, 0), QTime(), 0);
    row(QTime(0, 0, 0, 999), QTime(), 0);
    row(QTime(23, 59, 59, 999), QTime(), 86399);
}

void ClockTest::SecondsSinceAreNeverNegative()
{
    QFETCH(QTime, now);
    QFETCH(QTime, time);
    QFETCH(int, seconds);
    Time().SetLocal(now);
    QCOMPARE(Clock::SecondsSince(time), seconds);
}

void ClockTest::AClockFarOffIsNotFatal_data()
{
    Rows<qint64>::Add({
        {"the greatest moment", std::numeric_limits<qint64>::max()},
        {"a moment nearly as late", std::numeric_limits<qint64>::max() / 2},
        {"a moment very early", std::numeric_limits<qint64>::min() / 2},
        {"the least moment", std::numeric_limits<qint64>::min()},
    });
}

void ClockTest::AClockFarOffIsNotFatal()
{
    const qint64 now_ms = Rows<qint64>::Current();
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

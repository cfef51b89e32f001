#include "Action.h"
#include "ActionLine.h"
#include "Clock.h"
#include "FakeTask.h"
#include "Rows.h"
#include "Suite.h"
#include "TimeZone.h"
#include "UnitTest.h"

#include <QDateTime>
#include <QTemporaryFile>
#include <QtEndian>

using namespace Qt::StringLiterals;

// Days on which the clock is put forward or back. Seconds to a time of day count with the daylight-saving state of
// now: they are what the clock on the wall seems to say, as if it were not put.
class ClockChangesTest final : public UnitTest
{
    Q_OBJECT
private Q_SLOTS:
    void SecondsCountWithTheStateOfNow_data();
    void SecondsCountWithTheStateOfNow();
    void SecondsFollowTheWallClockAllDay_data();
    void SecondsFollowTheWallClockAllDay();
    void AnActionAroundTheChange_data();
    void AnActionAroundTheChange();
    void ALeapSecondIsTheLastOfItsMinute();
};

void ClockChangesTest::SecondsCountWithTheStateOfNow_data()
{
    QTest::addColumn<QByteArray>("zone");
    QTest::addColumn<QString>("utc");
    QTest::addColumn<QTime>("wall");
    QTest::addColumn<QTime>("time");
    QTest::addColumn<int>("seconds");
    const auto row = [](const char* name, const char* zone, const QString& utc, const QTime& wall, const QTime& time,
                        int seconds) {
        QTest::addRow("%s: %s", zone, name) << QByteArray(zone) << utc << wall << time << seconds;
    };
    const char* rome = "Europe/Rome"; // 2024-03-31 02:00 becomes 03:00, 2024-10-27 03:00 becomes 02:00
    row("a skipped time, from before", rome, u"2024-03-31T00:59:55"_s, QTime(1, 59, 55), QTime(2, 30), 1805);
    row("a skipped time, from after", rome, u"2024-03-31T01:00:00"_s, QTime(3, 0), QTime(2, 30), -1800);
    row("the first time after a skipped hour, from before", rome, u"2024-03-31T00:59:55"_s, QTime(1, 59, 55),
        QTime(3, 0), 3605);
    row("the first time after a skipped hour, from after", rome, u"2024-03-31T01:00:00"_s, QTime(3, 0), QTime(3, 0), 0);
    row("midnight, after the clock was put forward", rome, u"2024-03-31T10:00:00"_s, QTime(12, 0), QTime(0, 0), -43200);
    row("a repeated time, the first", rome, u"2024-10-27T00:30:00"_s, QTime(2, 30), QTime(2, 45), 900);
    row("a repeated time, the second", rome, u"2024-10-27T01:30:00"_s, QTime(2, 30), QTime(2, 45), 900);
    row("a repeated time, past the first", rome, u"2024-10-27T00:59:00"_s, QTime(2, 59), QTime(2, 0), -3540);
    row("a repeated time, ahead again", rome, u"2024-10-27T01:00:00"_s, QTime(2, 0), QTime(2, 59), 3540);
    row("the time after a repeated hour, from the first", rome, u"2024-10-27T00:59:55"_s, QTime(2, 59, 55), QTime(3, 0),
        5);
    row("the time after a repeated hour, from the second", rome, u"2024-10-27T01:59:55"_s, QTime(2, 59, 55),
        QTime(3, 0), 5);
    row("the evening, before the clock is put back", rome, u"2024-10-26T22:00:00"_s, QTime(0, 0), QTime(20, 0), 72000);

    const char* losAngeles = "America/Los_Angeles"; // 2024-03-10 02:00 becomes 03:00, 2024-11-03 02:00 becomes 01:00
    row("a skipped time, from before", losAngeles, u"2024-03-10T09:59:59"_s, QTime(1, 59, 59), QTime(2, 0), 1);
    row("a skipped time, from after", losAngeles, u"2024-03-10T10:00:00"_s, QTime(3, 0), QTime(2, 0), -3600);
    row("a repeated time, the first", losAngeles, u"2024-11-03T08:00:00"_s, QTime(1, 0), QTime(1, 0), 0);
    row("a repeated time, the second", losAngeles, u"2024-11-03T09:00:00"_s, QTime(1, 0), QTime(1, 0), 0);

    const char* auckland = "Pacific/Auckland"; // 2024-09-29 02:00 becomes 03:00, 2024-04-07 03:00 becomes 02:00
    row("a skipped time, from before", auckland, u"2024-09-28T13:59:50"_s, QTime(1, 59, 50), QTime(2, 0), 10);
    row("a skipped time, from after", auckland, u"2024-09-28T14:00:00"_s, QTime(3, 0), QTime(2, 59, 59), -1);
    row("a repeated time, the first", auckland, u"2024-04-06T13:30:00"_s, QTime(2, 30), QTime(2, 30, 5), 5);
    row("a repeated time, the second", auckland, u"2024-04-06T14:30:00"_s, QTime(2, 30), QTime(2, 30, 5), 5);

    const char* lordHowe = "Australia/Lord_Howe"; // 2024-10-06 02:00 becomes 02:30, 2024-04-07 02:00 becomes 01:30
    row("a skipped time, from before", lordHowe, u"2024-10-05T15:29:55"_s, QTime(1, 59, 55), QTime(2, 10), 605);
    row("a skipped time, from after", lordHowe, u"2024-10-05T15:30:00"_s, QTime(2, 30), QTime(2, 10), -1200);
    row("a repeated time, the first", lordHowe, u"2024-04-06T14:45:00"_s, QTime(1, 45), QTime(1, 50), 300);
    row("a repeated time, the second", lordHowe, u"2024-04-06T15:15:00"_s, QTime(1, 45), QTime(1, 50), 300);

    const char* cairo = "Africa/Cairo"; // 2024-04-26 00:00 becomes 01:00: the day has no midnight
    row("the last second before a skipped midnight", cairo, u"2024-04-25T21:59:59"_s, QTime(23, 59, 59), QTime(0, 0),
        -86399);
    row("a skipped midnight, from after", cairo, u"2024-04-25T22:00:00"_s, QTime(1, 0), QTime(0, 0), -3600);
}

void ClockChangesTest::SecondsCountWithTheStateOfNow()
{
    QFETCH(QByteArray, zone);
    QFETCH(QString, utc);
    QFETCH(QTime, wall);
    QFETCH(QTime, time);
    QFETCH(int, seconds);
    const TimeZone here(zone);
    Time().SetUtc_ms(QDateTime::fromString(utc + u'Z', Qt::ISODate).toMSecsSinceEpoch());
    QCOMPARE(Clock::TimeOfDay(), wall);
    QCOMPARE(Clock::SecondsTo(time.hour(), time.minute(), time.second()), seconds);
}

void ClockChangesTest::SecondsFollowTheWallClockAllDay_data()
{
    QTest::addColumn<QByteArray>("zone");
    QTest::addColumn<QDate>("date");
    const auto row = [](const char* zone, const QDate& date) {
        QTest::addRow("%s on %s", zone, qPrintable(date.toString(Qt::ISODate))) << QByteArray(zone) << date;
    };
    row("Europe/Rome", QDate(2024, 3, 31));
    row("Europe/Rome", QDate(2024, 10, 27));
    row("Europe/Rome", QDate(2039, 3, 27));
    row("America/Los_Angeles", QDate(2024, 3, 10));
    row("America/Los_Angeles", QDate(2024, 11, 3));
    row("Pacific/Auckland", QDate(2024, 9, 29));
    row("Pacific/Auckland", QDate(2024, 4, 7));
    row("Australia/Lord_Howe", QDate(2024, 10, 6));
    row("Australia/Lord_Howe", QDate(2024, 4, 7));
    row("Africa/Cairo", QDate(2024, 4, 26));
    row("Asia/Kathmandu", QDate(2024, 3, 31));
}

void ClockChangesTest::SecondsFollowTheWallClockAllDay()
{
    QFETCH(QByteArray, zone);
    QFETCH(QDate, date);
    const TimeZone here(zone);
    // A day and what is around it, in steps that meet no round time.
    Time().SetUtc(date.addDays(-1), QTime(0, 0));
    for (int i = 0; i < 3 * 24 * 6; ++i)
    {
        Time().Advance_s(601);
        const int now = QTime(0, 0).secsTo(Clock::TimeOfDay());
        for (const int hour : {0, 1, 2, 3, 12, 23})
            QCOMPARE(Clock::SecondsTo(hour, 15, 0), hour * 3600 + 900 - now);
    }
}

void ClockChangesTest::AnActionAroundTheChange_data()
{
    Rows<QString, QString, bool, bool>::Add({
        // Rome, 2024-03-31: after 01:59:59 comes 03:00:00.
        {"a skipped time is near before the change", u"2024-03-31T00:59:55"_s, u"02:00:05"_s, true, false},
        {"a skipped time is past after the change", u"2024-03-31T01:00:05"_s, u"02:00:05"_s, false, false},
        {"the first second after the change is not near before it", u"2024-03-31T00:59:59"_s, u"03:00:00"_s, false,
         false},
        {"the first second after the change is there at once", u"2024-03-31T01:00:00"_s, u"03:00:00"_s, false, true},
        {"a second later is near then", u"2024-03-31T01:00:00"_s, u"03:00:01"_s, true, false},
        // Rome, 2024-10-27: after 02:59:59 comes 02:00:00.
        {"a repeated time is due the first time", u"2024-10-27T00:30:00"_s, u"02:30:00"_s, false, true},
        {"and the second time", u"2024-10-27T01:30:00"_s, u"02:30:00"_s, false, true},
        {"a repeated time is near the first time", u"2024-10-27T00:29:50"_s, u"02:30:00"_s, true, false},
        {"and near the second time", u"2024-10-27T01:29:50"_s, u"02:30:00"_s, true, false},
        {"the time after it is near at the end of the first", u"2024-10-27T00:59:55"_s, u"03:00:00"_s, true, false},
        {"but not due then", u"2024-10-27T01:00:00"_s, u"03:00:00"_s, false, false},
        {"it is due after the second", u"2024-10-27T02:00:00"_s, u"03:00:00"_s, false, true},
    });
}

void ClockChangesTest::AnActionAroundTheChange()
{
    const auto& [utc, start, early, ready] = Rows<QString, QString, bool, bool>::Current();
    const TimeZone here("Europe/Rome");
    Action action(ActionLine{.start = start}.Text());
    action.m_task = std::make_unique<FakeTask>(TASK_VOLUME);
    Time().SetUtc_ms(QDateTime::fromString(utc + u'Z', Qt::ISODate).toMSecsSinceEpoch());
    QCOMPARE(action.IsEarly(), early);
    QCOMPARE(action.IsReady(), ready);
    QCOMPARE(action.IsLost(), false);
}

void ClockChangesTest::ALeapSecondIsTheLastOfItsMinute()
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

OZNA_CASE(ClockChanges, ClockChangesTest)
#include "tst_ClockChanges.moc"

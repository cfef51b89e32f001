#include "Action.h"
#include "ActionLine.h"
#include "FakeTask.h"
#include "Rows.h"
#include "Suite.h"
#include "TimeZone.h"
#include "UnitTest.h"

#include <QDateTime>

using namespace Qt::StringLiterals;

namespace
{

// Whether the day rules let the action start: a forced one waits for nothing else.
bool IsDue(const ActionLine& line)
{
    Action action(line.Text());
    action.m_task = std::make_unique<FakeTask>(TASK_VOLUME);
    action.m_forced = true;
    return action.IsEarly();
}

QDateTime LocalNow(const VirtualClock& clock)
{
    return QDateTime::fromMSecsSinceEpoch(clock.Utc_ms(), Qt::LocalTime);
}

} // namespace

class ActionDaysTest final : public UnitTest
{
    Q_OBJECT
private Q_SLOTS:
    void ADayOfWeekIsLocal_data();
    void ADayOfWeekIsLocal();
    void ADayOfWeekIsThatOfTheZoneOfNow();
    void ASpotDateIsThatOfUtc_data();
    void ASpotDateIsThatOfUtc();
    void ASpotDateCountsOnlyWhereTheDayOfWeekDoesNot_data();
    void ASpotDateCountsOnlyWhereTheDayOfWeekDoesNot();
    void AValidityRangeIsLocalAndIncludesItsEnds_data();
    void AValidityRangeIsLocalAndIncludesItsEnds();
    void LocalDateAndUtcDateMayDiffer_data();
    void LocalDateAndUtcDateMayDiffer();
};

void ActionDaysTest::ADayOfWeekIsLocal_data()
{
    QTest::addColumn<QString>("days");
    for (const QString& days : {u"1000000"_s, u"0100000"_s, u"0010000"_s, u"0001000"_s, u"0000100"_s, u"0000010"_s,
                                u"0000001"_s, u"1111100"_s, u"0000011"_s, u"1111111"_s, u"0000000"_s})
        QTest::newRow(qPrintable(days)) << days;
}

void ActionDaysTest::ADayOfWeekIsLocal()
{
    QFETCH(QString, days);
    const ActionLine line{.days = days};
    // Every hour of more than a week, and the moments around each midnight.
    Time().SetLocal(QDate(2024, 5, 13), QTime(0, 0));
    for (int hour = 0; hour < 8 * 24; ++hour)
    {
        for (const int step_ms : {0, 1, 3'599'998})
        {
            Time().Advance_ms(step_ms);
            const int day = LocalNow(Time()).date().dayOfWeek();
            QCOMPARE(IsDue(line), days[day - 1] == u'1');
        }
        Time().Advance_ms(1);
    }
}

void ActionDaysTest::ADayOfWeekIsThatOfTheZoneOfNow()
{
    const ActionLine wednesday{.days = u"0010000"_s};
    const ActionLine thursday{.days = u"0001000"_s};
    const TimeZone here("UTC");
    Time().SetUtc(QDate(2024, 5, 15), QTime(20, 0));
    QVERIFY(IsDue(wednesday));
    QVERIFY(!IsDue(thursday));
    // Nobody tells the library of the change.
    qputenv("TZ", "Pacific/Auckland");
    QVERIFY(!IsDue(wednesday));
    QVERIFY(IsDue(thursday));
}

void ActionDaysTest::ASpotDateIsThatOfUtc_data()
{
    QTest::addColumn<QString>("day");
    QTest::addColumn<QString>("month");
    QTest::addColumn<QString>("year");
    QTest::addColumn<QStringList>("due"); // UTC dates
    const auto row = [](const char* name, const QString& day, const QString& month, const QString& year,
                        const QStringList& due) { QTest::newRow(name) << day << month << year << due; };
    const QString any = u"*"_s;
    const QStringList all{u"2024-12-30"_s, u"2024-12-31"_s, u"2025-01-01"_s, u"2025-01-02"_s};
    row("a day", u"31"_s, any, any, {all[1]});
    row("a day and a month", u"1"_s, u"1"_s, any, {all[2]});
    row("a day in another month", u"1"_s, u"2"_s, any, {});
    row("a month", any, u"12"_s, any, {all[0], all[1]});
    row("a year", any, any, u"2025"_s, {all[2], all[3]});
    row("a day and a year", u"2"_s, any, u"2025"_s, {all[3]});
    row("a day in another year", u"2"_s, any, u"2024"_s, {});
    row("a month and a year", any, u"1"_s, u"2025"_s, {all[2], all[3]});
    row("day, month and year", u"30"_s, u"12"_s, u"2024"_s, {all[0]});
    row("day, month and a past year", u"30"_s, u"12"_s, u"1999"_s, {});
    row("nothing but stars", any, any, any, {});
    row("year -1 is any year", any, any, u"-1"_s, {});
    row("a day out of range is any day", u"32"_s, u"1"_s, any, {all[2], all[3]});
}

void ActionDaysTest::ASpotDateIsThatOfUtc()
{
    QFETCH(QString, day);
    QFETCH(QString, month);
    QFETCH(QString, year);
    QFETCH(QStringList, due);
    const ActionLine line{.days = u"0000000"_s, .day = day, .month = month, .year = year};
    // Four days, hour by hour and at the last millisecond of each.
    Time().SetUtc(QDate(2024, 12, 30), QTime(0, 0));
    for (int hour = 0; hour < 4 * 24; ++hour)
    {
        for (const int step_ms : {0, 3'599'999})
        {
            Time().Advance_ms(step_ms);
            const QDate today = QDateTime::fromMSecsSinceEpoch(Time().Utc_ms(), Qt::UTC).date();
            QCOMPARE(IsDue(line), due.contains(today.toString(Qt::ISODate)));
        }
        Time().Advance_ms(1);
    }
}

void ActionDaysTest::ASpotDateCountsOnlyWhereTheDayOfWeekDoesNot_data()
{
    // It is noon of Wednesday the 15th, in UTC the 15th as well or, far in the east, the 15th at its beginning.
    Rows<QString, QString, bool>::Add({
        {"every day, another spot day", u"1111111"_s, u"16"_s, true},
        {"that day of week, another spot day", u"0010000"_s, u"16"_s, true},
        {"another day of week, that spot day", u"0001000"_s, u"15"_s, true},
        {"another day of week, another spot day", u"0001000"_s, u"16"_s, false},
        {"another day of week, no spot day", u"0001000"_s, u"*"_s, false},
        {"no day of week, no spot day", u"0000000"_s, u"*"_s, false},
    });
}

void ActionDaysTest::ASpotDateCountsOnlyWhereTheDayOfWeekDoesNot()
{
    const auto& [days, day, due] = Rows<QString, QString, bool>::Current();
    QCOMPARE(IsDue(ActionLine{.days = days, .day = day}), due);
}

void ActionDaysTest::AValidityRangeIsLocalAndIncludesItsEnds_data()
{
    // first: days after 2024-05-10, from 0 to 9; none where the last is before the first
    Rows<QString, QString, int, int>::Add({
        {"no end", {}, {}, 0, 9},
        {"a first day", u"20240513"_s, {}, 3, 9},
        {"a last day", {}, u"20240516"_s, 0, 6},
        {"both", u"20240513"_s, u"20240516"_s, 3, 6},
        {"one day", u"20240515"_s, u"20240515"_s, 5, 5},
        {"a last day before the first", u"20240516"_s, u"20240513"_s, 0, -1},
        {"a first day long ago", u"19000101"_s, {}, 0, 9},
        {"a last day long ago", {}, u"19000101"_s, 0, -1},
        {"a first day far ahead", u"99991231"_s, {}, 0, -1},
        {"an invalid first day is none", u"20240230"_s, u"20240516"_s, 0, 6},
        {"an invalid last day is none", u"20240513"_s, u"20240431"_s, 3, 9},
    });
}

void ActionDaysTest::AValidityRangeIsLocalAndIncludesItsEnds()
{
    const auto& [from, to, first, last] = Rows<QString, QString, int, int>::Current();
    const ActionLine line{.from = from, .to = to};
    for (int day = 0; day <= 9; ++day)
    {
        for (const QTime& time : {QTime(0, 0), QTime(12, 0), QTime(23, 59, 59, 999)})
        {
            Time().SetLocal(QDate(2024, 5, 10).addDays(day), time);
            QCOMPARE(IsDue(line), day >= first && day <= last);
        }
    }
}

void ActionDaysTest::LocalDateAndUtcDateMayDiffer_data()
{
    QTest::addColumn<QByteArray>("zone");
    QTest::addColumn<QDate>("date");
    QTest::addColumn<QTime>("time");
    QTest::addColumn<ActionLine>("line");
    QTest::addColumn<bool>("due");
    const auto row = [](const char* name, const char* zone, const QDate& date, const QTime& time,
                        const ActionLine& line, bool due) {
        QTest::addRow("%s: %s", zone, name) << QByteArray(zone) << date << time << line << due;
    };
    const ActionLine christmas{.days = u"0000000"_s, .day = u"25"_s, .month = u"12"_s};
    const QDate eve(2024, 12, 24);
    const QDate day(2024, 12, 25);
    const QDate after(2024, 12, 26);
    row("the evening before is the day in UTC", "America/Los_Angeles", eve, QTime(16, 0), christmas, true);
    row("the afternoon before is not", "America/Los_Angeles", eve, QTime(15, 59, 59), christmas, false);
    row("the afternoon of the day", "America/Los_Angeles", day, QTime(15, 59, 59), christmas, true);
    row("the evening of the day is the next in UTC", "America/Los_Angeles", day, QTime(16, 0), christmas, false);
    row("the night of the day is the day before in UTC", "Pacific/Auckland", day, QTime(12, 59, 59), christmas, false);
    row("the afternoon of the day", "Pacific/Auckland", day, QTime(13, 0), christmas, true);
    row("the morning after is the day in UTC", "Pacific/Auckland", after, QTime(12, 59, 59), christmas, true);
    row("the morning of the day", "Asia/Kathmandu", day, QTime(5, 44, 59), christmas, false);
    row("a second later", "Asia/Kathmandu", day, QTime(5, 45), christmas, true);
    row("the night of the day", "Europe/Rome", day, QTime(0, 59, 59), christmas, false);
    row("an hour past midnight", "Europe/Rome", day, QTime(1, 0), christmas, true);
    const ActionLine wednesday{.days = u"0010000"_s};
    row("the day of week stays local", "America/Los_Angeles", day, QTime(23, 0), wednesday, true);
    row("the day of week begins locally", "Pacific/Auckland", day, QTime(0, 0), wednesday, true);
    const ActionLine valid{.from = u"20241225"_s, .to = u"20241225"_s};
    row("the range stays local", "America/Los_Angeles", day, QTime(23, 0), valid, true);
    row("the range ends locally", "America/Los_Angeles", after, QTime(0, 0), valid, false);
    row("the range begins locally", "Pacific/Auckland", day, QTime(0, 0), valid, true);
    const ActionLine both{
        .days = u"0000000"_s, .day = u"25"_s, .month = u"12"_s, .from = u"20241225"_s, .to = u"20241225"_s};
    row("spot day in UTC but out of the local range", "America/Los_Angeles", eve, QTime(20, 0), both, false);
    row("spot day in UTC and in the local range", "America/Los_Angeles", day, QTime(12, 0), both, true);
}

void ActionDaysTest::LocalDateAndUtcDateMayDiffer()
{
    QFETCH(QByteArray, zone);
    QFETCH(QDate, date);
    QFETCH(QTime, time);
    QFETCH(ActionLine, line);
    QFETCH(bool, due);
    const TimeZone here(zone);
    Time().SetLocal(date, time);
    QCOMPARE(IsDue(line), due);
}

OZNA_CASE(ActionDays, ActionDaysTest)
#include "tst_ActionDays.moc"

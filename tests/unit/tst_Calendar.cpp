#include "PassingTest.h"
#include "Suite.h"
#include "TimeZone.h"

using namespace Qt::StringLiterals;

// Days that not every year has, and years that not every processor can count to.
class CalendarTest final : public PassingTest
{
    Q_OBJECT
private Q_SLOTS:
    void ALineIsDueOnThatDay_data();
    void ALineIsDueOnThatDay();
    void AFarYearIsLikeAnyOther_data();
    void AFarYearIsLikeAnyOther();
    void TheScheduleRunsThroughTheEndOf32Bits();
};

void CalendarTest::ALineIsDueOnThatDay_data()
{
    QTest::addColumn<QByteArray>("fields"); // days, then day to last date
    QTest::addColumn<QDate>("date");
    QTest::addColumn<bool>("isDue");
    const auto rows = [](const char* fields, std::initializer_list<std::pair<QDate, bool>> dates) {
        for (const auto& [date, isDue] : dates)
            QTest::addRow("%s on %s", fields, qPrintable(date.toString(Qt::ISODate)))
                << QByteArray(fields) << date << isDue;
    };
    const QDate leapDay(2024, 2, 29); // a Thursday
    rows("1111111 *|*|*||", {{leapDay, true}});
    rows("0001000 *|*|*||", {{leapDay, true}, {leapDay.addDays(7), true}, {leapDay.addDays(1), false}});
    rows("0000000 29|2|*||", {{leapDay, true},
                              {QDate(2023, 2, 28), false},
                              {QDate(2023, 3, 1), false},
                              {QDate(2028, 2, 29), true},
                              {QDate(2000, 2, 29), true},
                              {QDate(2096, 2, 29), true},
                              {QDate(2100, 2, 28), false},
                              {QDate(2100, 3, 1), false},
                              {QDate(2104, 2, 29), true}});
    rows("0000000 29|*|*||", {{leapDay, true}, {QDate(2024, 3, 29), true}, {QDate(2100, 3, 1), false}});
    rows("0000000 *|2|2024||", {{leapDay, true}, {QDate(2024, 3, 1), false}});
    rows("0000000 31|*|*||", {{leapDay, false}, {QDate(2024, 3, 31), true}, {QDate(2024, 4, 30), false}});
    rows("1111111 *|*|*|20240229|20240301",
         {{QDate(2024, 2, 28), false}, {leapDay, true}, {QDate(2024, 3, 1), true}, {QDate(2024, 3, 2), false}});
    rows("1111111 *|*|*||20240228", {{QDate(2024, 2, 28), true}, {leapDay, false}});
    // A date that does not exist is none.
    rows("1111111 *|*|*|20230229|", {{QDate(2023, 2, 1), true}, {QDate(2022, 1, 1), true}});
    rows("1111111 *|*|*|21000229|", {{QDate(2024, 2, 1), true}});
    // Past what 32 bits hold.
    rows("0000000 20|1|2038||", {{QDate(2038, 1, 20), true}, {QDate(2038, 1, 19), false}});
    rows("1111111 *|*|*|20380119|20380120", {{QDate(2038, 1, 18), false},
                                             {QDate(2038, 1, 19), true},
                                             {QDate(2038, 1, 20), true},
                                             {QDate(2038, 1, 21), false}});
    rows("0100000 *|*|*||", {{QDate(2038, 1, 19), true}, {QDate(2038, 1, 20), false}, {QDate(2106, 2, 9), true}});
    rows("1111111 *|*|*|21060207|21060208", {{QDate(2106, 2, 6), false}, {QDate(2106, 2, 7), true}});
}

void CalendarTest::ALineIsDueOnThatDay()
{
    QFETCH(QByteArray, fields);
    QFETCH(QDate, date);
    QFETCH(bool, isDue);
    const QByteArrayList parts = fields.split(' ');
    Time().SetLocal(date, QTime(12, 29, 40));
    StartWith({parts[0] + "|12:30:00|" + parts[1] + "|Volume|1"});
    Pass(60);
    QCOMPARE(TakeRequests(), isDue ? QStringList{u"12:30:00 SetMasterVolume d 1"_s} : QStringList());
}

void CalendarTest::AFarYearIsLikeAnyOther_data()
{
    QTest::addColumn<QDate>("date");
    for (const int year : {1970, 2037, 2038, 2039, 2070, 2099, 2100, 2106, 2107, 9999})
        QTest::addRow("%d", year) << QDate(year, 7, 3);
    QTest::newRow("the last day of 32 bits") << QDate(2038, 1, 19);
    QTest::newRow("the last day of 32 bits without a sign") << QDate(2106, 2, 7);
}

void CalendarTest::AFarYearIsLikeAnyOther()
{
    QFETCH(QDate, date);
    Data().WritePlaylist("first.mp3;60\nsecond.mp3;30\n", u"day"_s);
    Time().SetLocal(date, QTime(12, 29, 40));
    StartSchedule({"12:30:00 Volume|1", "12:30:10 PlayMessage|gong.mp3,5", "12:31:00 PlayPlaylist|day",
                   "12:30:20 Light|7", "12:00:00 Light|80"});
    Pass(90);
    const QStringList expected{
        u"12:29:43 SetIntensity u 80"_s,
        u"12:29:43 Switch b true"_s,
        u"12:30:00 SetMasterVolume d 1"_s,
        u"12:30:02 SetPlayerVolume sd file 5"_s,
        u"12:30:02 PlayFile ss gong.mp3 12:30:10"_s,
        u"12:30:20 SetIntensity u 7"_s,
        u"12:30:20 Switch b true"_s,
        u"12:30:52 PlayPlaylist ssusb day  1 12:31:00 false"_s,
    };
    QCOMPARE(TakeRequests(), expected);
}

void CalendarTest::TheScheduleRunsThroughTheEndOf32Bits()
{
    const TimeZone here("UTC");
    for (const QDate& date : {QDate(2038, 1, 19), QDate(2106, 2, 7)})
    {
        const QTime last = date.year() == 2038 ? QTime(3, 14, 7) : QTime(6, 28, 15);
        Time().SetUtc(date, last.addSecs(-20));
        QByteArrayList lines;
        QStringList expected;
        for (const int later_s : {-5, 0, 1, 5, 3600})
        {
            const QString time = last.addSecs(later_s).toString(u"HH:mm:ss"_s);
            lines.append(time.toLatin1() + " Volume|" + QByteArray::number(later_s + 10));
            expected.append(u"%1 SetMasterVolume d %2"_s.arg(time).arg(later_s + 10));
        }
        StartSchedule(lines);
        Pass(2 * 3600);
        QCOMPARE(TakeRequests(), expected);
    }
}

OZNA_CASE(Calendar, CalendarTest)
#include "tst_Calendar.moc"

#include "OddTexts.h"
#include "Suite.h"
#include "UnitTest.h"
#include "text/TimeText.h"

#include <array>
#include <cstdio>

using namespace Qt::StringLiterals;

namespace
{

const QString TIME = u"hh:mm:ss"_s;
const QString DATE = u"yyyyMMdd"_s;

QDate ReadDate(const QString& text)
{
    return TimeText::ReadDate(QLatin1String(text.toLatin1()));
}

// Years of which each day is tried: the first and the last ones, those around the end of the Julian calendar, and those
// of schedules.
bool IsTriedWhole(int year)
{
    return year <= 5 || (year >= 1580 && year <= 1584) || (year >= 1960 && year <= 2110) || year >= 9995;
}

// The text is made here: the library would take seconds for all dates. It is asked about a part of them.
void CheckDate(const QDate& date)
{
    std::array<char, 16> text{};
    std::snprintf(text.data(), text.size(), "%04d%02d%02d", date.year(), date.month(), date.day());
    const QLatin1String field(text.data());
    if (TimeText::ReadDate(field) != date)
        QFAIL(text.data());
    if (date.day() == 1 || IsTriedWhole(date.year()))
        QCOMPARE(QDate::fromString(QString(field), DATE), date);
}

} // namespace

// The library is asked what each text means: no text may be read in another way than it does.
class TimeTextTest final : public UnitTest
{
    Q_OBJECT
private Q_SLOTS:
    void EveryTimeOfADayIsReadAndWritten();
    void NumbersThatAreNoTimeAreNone();
    void AnOddTimeIsReadAsTheLibraryDoes();
    void NoTimeIsWrittenAsNothing();
    void EveryDateIsRead();
    void DaysThatAMonthHasNotAreNone();
    void AnOddDateIsReadAsTheLibraryDoes();
};

void TimeTextTest::EveryTimeOfADayIsReadAndWritten()
{
    for (QTime time(0, 0);; time = time.addSecs(1))
    {
        const QString text = time.toString(TIME);
        QCOMPARE(TimeText::ReadTime(text), time);
        QCOMPARE(QTime::fromString(text, TIME), time);
        QCOMPARE(TimeText::WriteTime(time), text);
        if (time == QTime(23, 59, 59))
            break;
    }
    QCOMPARE(TimeText::WriteTime(QTime(8, 30, 0, 999)), u"08:30:00"_s);
}

void TimeTextTest::NumbersThatAreNoTimeAreNone()
{
    for (int number = 0; number < 100; ++number)
    {
        for (const auto& form : {u"%1:30:15"_s, u"08:%1:15"_s, u"08:30:%1"_s})
        {
            const QString text = form.arg(number, 2, 10, QLatin1Char('0'));
            QCOMPARE(TimeText::ReadTime(text), QTime::fromString(text, TIME));
        }
    }
}

void TimeTextTest::AnOddTimeIsReadAsTheLibraryDoes()
{
    OddTexts odd;
    for (int i = 0; i < 20000; ++i)
    {
        const QString text = odd.Spoil(QTime(0, 0).addSecs(odd.Pick(86400)).toString(TIME));
        const QTime read = TimeText::ReadTime(text);
        const QTime expected = QTime::fromString(text, TIME);
        QVERIFY2(read == expected && read.isValid() == expected.isValid(), qPrintable(text));
    }
    for (const auto& text : {u""_s, u" "_s, u"8:30:00"_s, u"08:30"_s, u"08:30:00:00"_s, u"24:00:00"_s, u"08.30.00"_s,
                             u"+8:30:00"_s, u"08:30:00 "_s, u"\uff10\uff18:30:00"_s})
        QCOMPARE(TimeText::ReadTime(text), QTime::fromString(text, TIME));
}

void TimeTextTest::NoTimeIsWrittenAsNothing()
{
    QCOMPARE(TimeText::WriteTime({}), QTime().toString(TIME));
    QCOMPARE(TimeText::WriteTime(QTime(25, 0)), QString());
}

void TimeTextTest::EveryDateIsRead()
{
    for (QDate month(1, 1, 1); month.year() <= 9999; month = month.addMonths(1))
    {
        for (QDate date = month; date.month() == month.month(); date = date.addDays(1))
            CheckDate(date);
        if (QTest::currentTestFailed())
            return;
    }
}

void TimeTextTest::DaysThatAMonthHasNotAreNone()
{
    for (const int year : {0, 1, 1582, 1900, 2000, 2023, 2024, 9999})
    {
        for (int monthAndDay = 0; monthAndDay < 10000; ++monthAndDay)
        {
            const int day = monthAndDay % 100;
            if (day > 1 && day < 28)
                continue;
            const QString text = u"%1%2"_s.arg(year, 4, 10, QLatin1Char('0')).arg(monthAndDay, 4, 10, QLatin1Char('0'));
            QCOMPARE(ReadDate(text), QDate::fromString(text, DATE));
        }
    }
}

void TimeTextTest::AnOddDateIsReadAsTheLibraryDoes()
{
    OddTexts odd;
    for (int i = 0; i < 20000; ++i)
    {
        const QString text = odd.Spoil(QDate(1, 1, 1).addDays(odd.Pick(3652059)).toString(DATE));
        // A field has no other characters than these.
        const QString field = QString::fromLatin1(text.toLatin1());
        const QDate read = ReadDate(field);
        const QDate expected = QDate::fromString(field, DATE);
        QVERIFY2(read == expected && read.isValid() == expected.isValid(), qPrintable(field));
    }
    for (const auto& text : {u""_s, u" "_s, u"*"_s, u"2024"_s, u"2024-01-01"_s, u"202401011"_s, u"-2024010"_s,
                             u"+2024011"_s, u"2024 101"_s, u"2024010x"_s, u"00000101"_s})
        QCOMPARE(ReadDate(text), QDate::fromString(text, DATE));
}

OZNA_CASE(TimeText, TimeTextTest)
#include "tst_TimeText.moc"

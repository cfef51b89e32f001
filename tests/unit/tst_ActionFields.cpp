#include "Action.h"
#include "ActionLine.h"
#include "Rows.h"
#include "Suite.h"
#include "UnitTest.h"

#include <limits>

using namespace Qt::StringLiterals;

class ActionFieldsTest final : public UnitTest
{
    Q_OBJECT
private Q_SLOTS:
    void DaysOfWeekBecomeAMask_data();
    void DaysOfWeekBecomeAMask();
    void AStartTimeIsReadByItsParts_data();
    void AStartTimeIsReadByItsParts();
    void ASpotFieldIsANumberOrAny_data();
    void ASpotFieldIsANumberOrAny();
    void AValidityDateIsADateOrNone_data();
    void AValidityDateIsADateOrNone();
    void WhatTheLineDoesNotSayIsZero();
};

void ActionFieldsTest::DaysOfWeekBecomeAMask_data()
{
    Rows<QString, int>::Add({
        {"every day", u"1111111"_s, 0x7f},
        {"no day", u"0000000"_s, 0},
        {"an empty field", u""_s, 0},
        {"Monday", u"1000000"_s, 2},
        {"Tuesday", u"0100000"_s, 4},
        {"Wednesday", u"0010000"_s, 8},
        {"Thursday", u"0001000"_s, 16},
        {"Friday", u"0000100"_s, 32},
        {"Saturday", u"0000010"_s, 64},
        {"Sunday", u"0000001"_s, 1},
        {"working days", u"1111100"_s, 0x3e},
        {"the weekend", u"0000011"_s, 0x41},
        {"a short field leaves the missing days clear", u"11"_s, 6},
        {"one character", u"1"_s, 2},
        {"an eighth character has no meaning", u"00000001"_s, 0},
        {"a long field", u"111111111111"_s, 0x7f},
        {"any character but 1 is not due", u"12x *-1"_s, 3},
        {"blanks at the start are trimmed away", u"  1000000"_s, 2},
        {"blanks inside keep their place", u"1 1"_s, 10},
        {"a wide digit is not due", u"\uff11"_s, 0},
    });
}

void ActionFieldsTest::DaysOfWeekBecomeAMask()
{
    const auto& [days, mask] = Rows<QString, int>::Current();
    const Action action(ActionLine{.days = days}.Text());
    QCOMPARE(static_cast<int>(action.m_dow), mask);
}

void ActionFieldsTest::AStartTimeIsReadByItsParts_data()
{
    constexpr int GREATEST = std::numeric_limits<int>::max();
    Rows<QString, QList<int>, QTime>::Add({
        {"two digits each", u"08:30:15"_s, {8, 30, 15}, QTime(8, 30, 15)},
        {"midnight", u"00:00:00"_s, {0, 0, 0}, QTime(0, 0)},
        {"the last second", u"23:59:59"_s, {23, 59, 59}, QTime(23, 59, 59)},
        {"one digit each", u"8:5:0"_s, {8, 5, 0}, QTime(8, 5)},
        {"many digits", u"0008:0005:00000"_s, {8, 5, 0}, QTime(8, 5)},
        {"blanks around the parts", u"08 : 30 : 15"_s, {8, 30, 15}, QTime(8, 30, 15)},
        {"further parts are not looked at", u"08:30:15:99:x"_s, {8, 30, 15}, QTime(8, 30, 15)},
        {"a separator at the end", u"08:30:15:"_s, {8, 30, 15}, QTime(8, 30, 15)},
        {"an hour that is no number counts as 0", u"x:30:15"_s, {0, 30, 15}, QTime(0, 30, 15)},
        {"a minute that is no number counts as 0", u"08:*:15"_s, {8, 0, 15}, QTime(8, 0, 15)},
        {"a second that is no number counts as 0", u"08:30:1a"_s, {8, 30, 0}, QTime(8, 30)},
        {"empty parts count as 0", u"::15"_s, {0, 0, 15}, QTime(0, 0, 15)},
        {"hour 24 is no clock time", u"24:00:00"_s, {24, 0, 0}, {}},
        {"hour 25 is no clock time", u"25:00:00"_s, {25, 0, 0}, {}},
        {"minute 60 is no clock time", u"08:60:00"_s, {8, 60, 0}, {}},
        {"second 60 is no clock time", u"08:30:60"_s, {8, 30, 60}, {}},
        {"99:99:99 is no clock time", u"99:99:99"_s, {99, 99, 99}, {}},
        {"a negative hour is no clock time", u"-1:30:00"_s, {-1, 30, 0}, {}},
        {"the greatest hour", u"2147483647:0:0"_s, {GREATEST, 0, 0}, {}},
        {"an hour that no int holds counts as 0", u"2147483648:0:0"_s, {0, 0, 0}, QTime(0, 0)},
    });
}

void ActionFieldsTest::AStartTimeIsReadByItsParts()
{
    const auto& [start, parts, time] = Rows<QString, QList<int>, QTime>::Current();
    const Action action(ActionLine{.start = start}.Text());
    QCOMPARE((QList<int>{action.m_hour, action.m_minute, action.m_second}), parts);
    QCOMPARE(action.m_startTime, time);
    QCOMPARE(action.m_startTime.isValid(), time.isValid());
}

void ActionFieldsTest::ASpotFieldIsANumberOrAny_data()
{
    QTest::addColumn<QString>("name"); // which of the three fields
    QTest::addColumn<QString>("field");
    QTest::addColumn<int>("value");
    QTest::addColumn<bool>("taken");
    const auto row = [](const QString& name, const QString& field, int value, bool taken = true) {
        QTest::addRow("%s \"%s\"", qPrintable(name), qPrintable(field)) << name << field << value << taken;
    };
    const auto any = [&row](const QString& name, const QString& field) { row(name, field, -1, false); };
    for (const QString& name : {u"day"_s, u"month"_s, u"year"_s})
    {
        row(name, u"1"_s, 1);
        row(name, u"12"_s, 12);
        row(name, u"007"_s, 7);
        row(name, u"+5"_s, 5);
        any(name, u"*"_s);
        any(name, u""_s);
        any(name, u"x"_s);
        any(name, u"5x"_s);
        any(name, u"5.0"_s);
        any(name, u"1 2"_s);
        any(name, u"2147483648"_s);
        any(name, u"99999999999999999999"_s);
    }
    row(u"day"_s, u"31"_s, 31);
    any(u"day"_s, u"32"_s);
    any(u"day"_s, u"0"_s);
    any(u"day"_s, u"-1"_s);
    any(u"day"_s, u"2147483647"_s);
    row(u"month"_s, u"11"_s, 11);
    any(u"month"_s, u"13"_s);
    any(u"month"_s, u"0"_s);
    any(u"month"_s, u"-1"_s);
    any(u"month"_s, u"December"_s);
    // A year is any number. -1 is the mark of any year, but it is a number and goes without a word.
    row(u"year"_s, u"1999"_s, 1999);
    row(u"year"_s, u"2024"_s, 2024);
    row(u"year"_s, u"0"_s, 0);
    row(u"year"_s, u"-1"_s, -1);
    row(u"year"_s, u"-2147483648"_s, std::numeric_limits<int>::min());
    row(u"year"_s, u"2147483647"_s, std::numeric_limits<int>::max());
}

void ActionFieldsTest::ASpotFieldIsANumberOrAny()
{
    QFETCH(QString, name);
    QFETCH(QString, field);
    QFETCH(int, value);
    QFETCH(bool, taken);
    ActionLine line{.day = u"1"_s, .month = u"1"_s, .year = u"1"_s};
    (name == "day"_L1 ? line.day : name == "month"_L1 ? line.month : line.year) = field;
    const Action action(line.Text());
    QCOMPARE(name == "day"_L1 ? action.m_day : name == "month"_L1 ? action.m_month : action.m_year, value);

    QStringList said = LogRecorder::Messages().filter(u"Found "_s);
    QCOMPARE(said, taken ? QStringList() : QStringList(u"Found %1=%2, consider %1=all"_s.arg(name, field)));
    for (const LogRecord& record : LogRecorder::Records())
    {
        if (record.text.contains("Found "))
            QCOMPARE(record.level, 9U);
    }
}

void ActionFieldsTest::AValidityDateIsADateOrNone_data()
{
    Rows<QString, QDate>::Add({
        {"a date", u"20240101"_s, QDate(2024, 1, 1)},
        {"the last day of a year", u"20241231"_s, QDate(2024, 12, 31)},
        {"the leap day", u"20240229"_s, QDate(2024, 2, 29)},
        {"blanks around it are trimmed", u"  20240101 "_s, QDate(2024, 1, 1)},
        {"empty", u""_s, {}},
        {"blanks alone", u"   "_s, {}},
        {"a day that February never has", u"20240230"_s, {}},
        {"a leap day in another year", u"20230229"_s, {}},
        {"month 13", u"20241301"_s, {}},
        {"day 0", u"20240100"_s, {}},
        {"dashes", u"2024-01-01"_s, {}},
        {"the order of the summary", u"01-01-2024"_s, {}},
        {"a digit too few", u"2024011"_s, {}},
        {"a digit too many", u"202401011"_s, {}},
        {"text behind it", u"20240101x"_s, {}},
        {"a star", u"*"_s, {}},
        {"no number", u"yyyymmdd"_s, {}},
    });
}

void ActionFieldsTest::AValidityDateIsADateOrNone()
{
    const auto& [field, date] = Rows<QString, QDate>::Current();
    const Action from(ActionLine{.from = field}.Text());
    QCOMPARE(from.m_hasFrom, date.isValid());
    QCOMPARE(from.m_hasTo, false);
    const Action to(ActionLine{.to = field}.Text());
    QCOMPARE(to.m_hasTo, date.isValid());
    QCOMPARE(to.m_hasFrom, false);
    if (date.isValid())
    {
        QCOMPARE(from.m_from, date);
        QCOMPARE(to.m_to, date);
    }
    const QString shown = date.isValid() ? date.toString(u"dd-MM-yyyy"_s) : u"always"_s;
    QCOMPARE(LogRecorder::Messages().filter(u"From: "_s), (QStringList{u"From:   "_s + shown, u"From:   always"_s}));
    QCOMPARE(LogRecorder::Messages().filter(u"To: "_s), (QStringList{u"To:     always"_s, u"To:     "_s + shown}));
}

void ActionFieldsTest::WhatTheLineDoesNotSayIsZero()
{
    const Action action(ActionLine{}.Text());
    QCOMPARE(action.m_delay, 0);
    QCOMPARE(action.m_forced, false);
    QCOMPARE(action.parent(), nullptr);
}

OZNA_CASE(ActionFields, ActionFieldsTest)
#include "tst_ActionFields.moc"

#include "Suite.h"
#include "service/StartMoment.h"

#include <QDateTime>
#include <QTest>
#include <QTimeZone>

using namespace Qt::StringLiterals;

// Where a start time lies, on every kind of day.
class tst_StartMoment final : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void IsTheNearest_data();
    void IsTheNearest();
    void OfANightThatHasItTwiceItIsTheNearer();
    void TextOfAnotherFormIsNone();
};

void tst_StartMoment::IsTheNearest_data()
{
    QTest::addColumn<QDateTime>("now");
    QTest::addColumn<QString>("time");
    QTest::addColumn<QDateTime>("moment");
    // Clocks are set on none, one or two of these days, as the zone has it.
    for (const QDate& day : {QDate(2024, 5, 15), QDate(2024, 3, 31), QDate(2024, 10, 27), QDate(2024, 3, 10),
                             QDate(2024, 11, 3), QDate(2024, 12, 31), QDate(2040, 2, 29)})
    {
        const auto row = [&](const char* name, QTime now, QTime then, int days) {
            QTest::addRow("%s, %s", qPrintable(day.toString(Qt::ISODate)), name)
                << QDateTime(day, now) << then.toString(u"hh:mm:ss"_s) << QDateTime(day.addDays(days), then);
        };
        row("ahead", {8, 29, 52}, {8, 30}, 0);
        row("past", {8, 30, 1}, {8, 30}, 0);
        row("over the change", {1, 0}, {8, 0}, 0);
        row("before the change", {8, 0}, {1, 0}, 0);
        row("tomorrow's", {23, 59, 55}, {0, 0, 2}, 1);
        row("yesterday's", {0, 0, 2}, {23, 59, 55}, -1);
        row("midnight", {0, 0}, {0, 0}, 0);
    }
}

void tst_StartMoment::IsTheNearest()
{
    QFETCH(const QDateTime, now);
    QFETCH(const QString, time);
    QFETCH(const QDateTime, moment);
    const auto found = StartMoment::Nearest_ms(time, now.toMSecsSinceEpoch());
    QVERIFY(found.has_value());
    QCOMPARE(QDateTime::fromMSecsSinceEpoch(*found), moment);
}

void tst_StartMoment::OfANightThatHasItTwiceItIsTheNearer()
{
    // 02:30 summer time, and the same on the clock an hour later.
    const qint64 first_ms = QDateTime({2024, 10, 27}, {0, 30}, Qt::UTC).toMSecsSinceEpoch();
    const qint64 second_ms = first_ms + 3'600'000;
    if (QTimeZone::systemTimeZoneId() != "Europe/Rome")
        QSKIP("the night is that of another zone");
    for (const qint64 moment_ms : {first_ms, second_ms})
    {
        QCOMPARE(StartMoment::Nearest_ms(u"02:30:00"_s, moment_ms - 8000), moment_ms);
        QCOMPARE(StartMoment::Nearest_ms(u"02:30:00"_s, moment_ms), moment_ms);
        QCOMPARE(StartMoment::Nearest_ms(u"02:30:00"_s, moment_ms + 8000), moment_ms);
    }
}

void tst_StartMoment::TextOfAnotherFormIsNone()
{
    for (const char* text : {"", "8:30:00", "08:30", "24:00:00", "08:30:61", "now", " 08:30:00"})
        QVERIFY2(!StartMoment::Nearest_ms(QString::fromLatin1(text), 1'700'000'000'000).has_value(), text);
}

OZNA_CASE(StartMoment, tst_StartMoment)

#include "tst_StartMoment.moc"

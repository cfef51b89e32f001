#include "Suite.h"
#include "service/StartMoment.h"

#include <QDateTime>
#include <QTest>
#include <QTimeZone>

#include <algorithm>
#include <array>

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
    // When the clock shows that time in the night in which it is set back: twice, an hour apart, but not where it
    // stays.
    constexpr qint64 HOUR_MS = 3'600'000;
    struct Night
    {
        const char* zone;
        QDateTime first;
        QString time;
        int times;
    };
    const std::array nights{
        Night{"UTC", QDateTime({2024, 10, 27}, {2, 30}, Qt::UTC), u"02:30:00"_s, 1},
        Night{"Europe/Rome", QDateTime({2024, 10, 27}, {0, 30}, Qt::UTC), u"02:30:00"_s, 2},
        Night{"America/New_York", QDateTime({2024, 11, 3}, {5, 30}, Qt::UTC), u"01:30:00"_s, 2},
    };
    const auto night = std::ranges::find_if(
        nights, [zone = QTimeZone::systemTimeZoneId()](const Night& each) { return zone == each.zone; });
    QVERIFY(night != nights.end());
    for (int number = 0; number < night->times; ++number)
    {
        const qint64 moment_ms = night->first.toMSecsSinceEpoch() + number * HOUR_MS;
        for (const qint64 away_ms : {-8000, 0, 8000})
            QCOMPARE(StartMoment::Nearest_ms(night->time, moment_ms + away_ms), moment_ms);
    }
}

void tst_StartMoment::TextOfAnotherFormIsNone()
{
    for (const char* text : {"", "8:30:00", "08:30", "24:00:00", "08:30:61", "now", " 08:30:00"})
        QVERIFY2(!StartMoment::Nearest_ms(QString::fromLatin1(text), 1'700'000'000'000).has_value(), text);
}

OZNA_CASE(StartMoment, tst_StartMoment)

#include "tst_StartMoment.moc"

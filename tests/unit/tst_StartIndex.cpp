#include "Suite.h"
#include "UnitTest.h"
#include "starts/StartIndex.h"

namespace
{

constexpr int NOON_S = 43200;
constexpr qint64 DAY_S = StartIndex::DAY_S;

} // namespace

// Moments of the clock on the wall, on both sides of 1970.
class StartIndexTest final : public UnitTest
{
    Q_OBJECT
private Q_SLOTS:
    void AMomentHasADateAndATime_data();
    void AMomentHasADateAndATime();
    void TheLatestMomentIsNowAtTheLatest_data();
    void TheLatestMomentIsNowAtTheLatest();
};

void StartIndexTest::AMomentHasADateAndATime_data()
{
    QTest::addColumn<qint64>("moment_s");
    QTest::addColumn<QDate>("date");
    QTest::addColumn<QTime>("time");
    QTest::newRow("the first") << qint64{0} << QDate(1970, 1, 1) << QTime(0, 0);
    QTest::newRow("the last of that day") << DAY_S - 1 << QDate(1970, 1, 1) << QTime(23, 59, 59);
    QTest::newRow("the one before") << qint64{-1} << QDate(1969, 12, 31) << QTime(23, 59, 59);
    QTest::newRow("a day before") << -DAY_S << QDate(1969, 12, 31) << QTime(0, 0);
}

void StartIndexTest::AMomentHasADateAndATime()
{
    QFETCH(qint64, moment_s);
    QFETCH(QDate, date);
    QFETCH(QTime, time);
    QCOMPARE(StartIndex::DateOf(moment_s), date);
    QCOMPARE(StartIndex::TimeOf(moment_s), time);
}

void StartIndexTest::TheLatestMomentIsNowAtTheLatest_data()
{
    QTest::addColumn<qint64>("now_s");
    QTest::addColumn<qint64>("latest_s");
    QTest::newRow("now") << qint64{NOON_S} << qint64{NOON_S};
    QTest::newRow("a second ago") << qint64{NOON_S + 1} << qint64{NOON_S};
    QTest::newRow("yesterday") << qint64{NOON_S - 1} << NOON_S - DAY_S;
    QTest::newRow("before 1970") << NOON_S - DAY_S - 1 << NOON_S - 2 * DAY_S;
}

void StartIndexTest::TheLatestMomentIsNowAtTheLatest()
{
    QFETCH(qint64, now_s);
    QFETCH(qint64, latest_s);
    QCOMPARE(qint64{StartIndex::Latest(NOON_S, now_s)}, latest_s);
}

OZNA_CASE(StartIndex, StartIndexTest)
#include "tst_StartIndex.moc"

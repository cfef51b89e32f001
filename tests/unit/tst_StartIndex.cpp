#include "Rows.h"
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
    Rows<qint64, QDate, QTime>::Add({
        {"the first", {0}, QDate(1970, 1, 1), QTime(0, 0)},
        {"the last of that day", DAY_S - 1, QDate(1970, 1, 1), QTime(23, 59, 59)},
        {"the one before", {-1}, QDate(1969, 12, 31), QTime(23, 59, 59)},
        {"a day before", -DAY_S, QDate(1969, 12, 31), QTime(0, 0)},
    });
}

void StartIndexTest::AMomentHasADateAndATime()
{
    const auto& [moment_s, date, time] = Rows<qint64, QDate, QTime>::Current();
    QCOMPARE(StartIndex::DateOf(moment_s), date);
    QCOMPARE(StartIndex::TimeOf(moment_s), time);
}

void StartIndexTest::TheLatestMomentIsNowAtTheLatest_data()
{
    Rows<qint64, qint64>::Add({
        {"now", {NOON_S}, {NOON_S}},
        {"a second ago", {NOON_S + 1}, {NOON_S}},
        {"yesterday", {NOON_S - 1}, NOON_S - DAY_S},
        {"before 1970", NOON_S - DAY_S - 1, NOON_S - 2 * DAY_S},
    });
}

void StartIndexTest::TheLatestMomentIsNowAtTheLatest()
{
    const auto& [now_s, latest_s] = Rows<qint64, qint64>::Current();
    QCOMPARE(qint64{StartIndex::Latest(NOON_S, now_s)}, latest_s);
}

OZNA_CASE(StartIndex, StartIndexTest)
#include "tst_StartIndex.moc"

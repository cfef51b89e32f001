#include "Action.h"
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
    void TimesOutOfTheDayAreFoundByTheirSecondsAlone();
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

void StartIndexTest::TimesOutOfTheDayAreFoundByTheirSecondsAlone()
{
    ActionList actions;
    for (const char* start : {"25:00:00", "12:00:00", "-1:00:00", "24:00:00", "11:60:00", "999999999:00:00"})
        actions.Append(
            std::make_unique<Action>(QStringLiteral("1111111|%1|*|*|*|||StopMessage").arg(QLatin1String(start))));
    StartIndex index;
    index.Build(actions);

    QList<qint64> visited;
    const auto within = [&](qint64 first_s, qint64 last_s) {
        visited.clear();
        index.Within(first_s, last_s, [&](auto entry) { visited.append((*entry)->m_hour); });
        return visited;
    };
    QCOMPARE(within(-DAY_S, 2 * DAY_S), (QList<qint64>{-1, 12, 11, 24, 25}));
    QCOMPARE(within(-3600, NOON_S - 1), QList<qint64>{-1});
    QCOMPARE(within(DAY_S, DAY_S + 3600), (QList<qint64>{24, 25}));
    QCOMPARE(within(DAY_S + 1, DAY_S + 3599), QList<qint64>());

    visited.clear();
    QVERIFY(index.Backwards(-1, 2 * DAY_S - 1, [&](const Action&, std::int64_t due_s) { visited.append(due_s); }));
    QCOMPARE(visited, (QList<qint64>{DAY_S + NOON_S, DAY_S + NOON_S, NOON_S, NOON_S}));
}

OZNA_CASE(StartIndex, StartIndexTest)
#include "tst_StartIndex.moc"

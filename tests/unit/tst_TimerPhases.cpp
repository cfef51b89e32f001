#include "FakeTask.h"
#include "Rows.h"
#include "SchedulerTest.h"
#include "Suite.h"

#include <set>

using namespace Qt::StringLiterals;

namespace
{

constexpr int PHASES = Scheduler::FAR_INTERVAL_MS / Scheduler::EARLY_INTERVAL_MS;

} // namespace

// When actions start depends on where the two timers stand: every phase is tried, on the days' longest stretches.
class TimerPhasesTest final : public SchedulerTest
{
    Q_OBJECT
private Q_SLOTS:
    void AnActionStartsOnceWhateverThePhase_data();
    void AnActionStartsOnceWhateverThePhase();
    void AWeekStartsEachActionOnceADay();
    void TheFirstSecondsOfADayDependOnThePhase_data();
    void TheFirstSecondsOfADayDependOnThePhase();

private:
    // Lets that much time pass; phase: how many fifths of a second come before the first far pass.
    void Pass(int seconds, int phase);
};

void TimerPhasesTest::Pass(int seconds, int phase)
{
    PassTime(seconds * 1000, phase * Scheduler::EARLY_INTERVAL_MS);
    LogRecorder::Clear();
}

void TimerPhasesTest::AnActionStartsOnceWhateverThePhase_data()
{
    QTest::addColumn<QString>("task");
    QTest::addColumn<int>("phase");
    QTest::addColumn<int>("ahead_ms"); // by how much the start is asked for ahead of its time
    for (int phase = 0; phase < PHASES; ++phase)
    {
        QTest::addRow("Volume, phase %d", phase) << u"Volume"_s << phase << 0;
        QTest::addRow("PlayMessage, phase %d", phase) << u"PlayMessage"_s << phase << 8000;
    }
}

void TimerPhasesTest::AnActionStartsOnceWhateverThePhase()
{
    QFETCH(QString, task);
    QFETCH(int, phase);
    QFETCH(int, ahead_ms);
    Time().SetLocal(QTime(12, 0, 0, 70));
    StartWith({"1111111|12:00:30|*|*|*|||" + task.toUtf8() + "|a"});
    FakeTask* const fake = FakeTask::Living()[0];
    QList<int> starts_ms;
    fake->m_onRun = [&] {
        starts_ms.append(static_cast<int>(Time().Utc_ms() % 60'000));
        fake->m_running = task == "PlayMessage"_L1;
    };
    Pass(60, phase);
    QCOMPARE(starts_ms.size(), 1);
    QCOMPARE(starts_ms[0], 30'000 - ahead_ms);
}

void TimerPhasesTest::AWeekStartsEachActionOnceADay()
{
    const QStringList times{u"00:00:10"_s, u"06:30:00"_s, u"12:00:00"_s, u"23:59:59"_s};
    QByteArrayList lines;
    for (const QString& time : times)
        lines.append("1111100|" + time.toUtf8() + "|*|*|*|||Volume|1");
    Time().SetLocal(QDate(2024, 5, 13), QTime(0, 0));
    StartWith(lines);
    std::multiset<QString> starts;
    for (int i = 0; i < times.size(); ++i)
        FakeTask::Living()[i]->m_onRun = [&starts, &times, i] { starts.insert(times[i]); };
    for (int day = 0; day < 7; ++day)
    {
        for (const QString& time : times)
        {
            // Only what is around the start needs every pass.
            const int from = QTime(0, 0).secsTo(QTime::fromString(time)) - 15;
            Time().SetLocal(QDate(2024, 5, 13).addDays(day), QTime(0, 0).addSecs(std::max(from, 0)));
            Pass(std::min(40, 86400 - std::max(from, 0)), day * 2);
        }
    }
    for (const QString& time : times)
        QCOMPARE(starts.count(time), size_t{5});
}

void TimerPhasesTest::TheFirstSecondsOfADayDependOnThePhase_data()
{
    // A far pass has to come between midnight and the start.
    // phases: at how many of the fifteen it starts
    Rows<QString, int>::Add({
        {"midnight never starts", u"00:00:00"_s, 0},
        {"a second past it", u"00:00:01"_s, 5},
        {"two seconds past it", u"00:00:02"_s, 10},
        {"three seconds past it always starts", u"00:00:03"_s, 15},
        {"the last second of the day always starts", u"23:59:59"_s, 15},
    });
}

void TimerPhasesTest::TheFirstSecondsOfADayDependOnThePhase()
{
    const auto& [start, phases] = Rows<QString, int>::Current();
    int started = 0;
    for (int phase = 0; phase < PHASES; ++phase)
    {
        Time().SetLocal(QDate(2024, 5, 15), QTime(23, 59, 30));
        StartWith({"1111111|" + start.toUtf8() + "|*|*|*|||Volume|1"});
        int runs = 0;
        FakeTask::Living()[0]->m_onRun = [&runs] { ++runs; };
        Pass(60, phase);
        QVERIFY(runs <= 1);
        started += runs;
    }
    QCOMPARE(started, phases);
}

OZNA_CASE(TimerPhases, TimerPhasesTest)
#include "tst_TimerPhases.moc"

#include "DaemonLog.h"
#include "RandomPlan.h"
#include "RandomSchedule.h"
#include "RehearsalTexts.h"
#include "Suite.h"
#include "TextDiff.h"
#include "TimeZone.h"
#include "engine/ClockChange.h"
#include "engine/Rehearsal.h"
#include "engine/Workspace.h"

#include <QHash>
#include <QRegularExpression>
#include <QTest>

#include <algorithm>
#include <numeric>

using namespace Qt::StringLiterals;
using namespace RehearsalTexts;

namespace
{

constexpr int MOST_LINES = 50;
constexpr qint64 SPAN_MS = 2LL * 86400 * 1000;

// How many starts the records of missed ones tell, those that are counted together included.
qsizetype Counted(const QStringList& records)
{
    static const QRegularExpression OTHERS(u"^MISSED actions: ([0-9]+) others"_s);
    return std::accumulate(records.begin(), records.end(), qsizetype{0}, [](qsizetype count, const QString& record) {
        const QString others = OTHERS.match(record).captured(1);
        return count + (others.isEmpty() ? 1 : others.toInt());
    });
}

// How many of them, told last, are of starts behind the end: what decides on the last ones before it tells of those
// too.
qsizetype Behind(const QStringList& records, QTime end)
{
    constexpr int DECIDING_S = 30;
    static const QRegularExpression DUE(u" due at (?:[-0-9]+ )?([:0-9]+): "_s);
    const auto isBefore = [end](const QString& record) {
        const int after_s = end.secsTo(QTime::fromString(DUE.match(record).captured(1), u"HH:mm:ss"_s));
        return after_s < 0 || after_s > DECIDING_S;
    };
    return std::distance(records.rbegin(), std::ranges::find_if(records.rbegin(), records.rend(), isBefore));
}

} // namespace

// What a rehearsal leaves out is what would have found nothing.
class RehearsalTest final : public QObject
{
    Q_OBJECT
public:
    static void initMain() { Workspace::PrepareProcess(); }

private Q_SLOTS:
    void SkippingAheadChangesNothing_data() { AddSeeds(OZNA_SEEDS); }
    void SkippingAheadChangesNothing();
    void WhatIsMissedIsWhatTheDaemonLogs_data() { AddSeeds(OZNA_SEEDS / 4); }
    void WhatIsMissedIsWhatTheDaemonLogs();
    void APeerThatHoldsUpThePassesLeavesItsCause();
    void HandingOverEventsEarlyChangesNothing_data() { AddSeeds(2 + OZNA_SEEDS / 8); }
    void HandingOverEventsEarlyChangesNothing();
    void OneMayEndItInTheMiddleOfADay();
    void AChangeOfTheClocksIsPartOfTheSpanThatItBegins();
    void cleanupTestCase();

private:
    static void AddSeeds(int count);
    void CompareMissed(int seed);

    qint64 m_requests = 0;
    qint64 m_passes = 0;
    qint64 m_everyPass = 0;
    size_t m_early = 0;           // events that were handed over before the end
    QHash<QString, int> m_causes; // what was missed, by cause
};

void RehearsalTest::AddSeeds(int count)
{
    QTest::addColumn<int>("seed");
    // Each zone has seeds of its own.
    int zone = 0;
    for (const char letter : qgetenv("TZ"))
        zone += letter;
    for (int i = 0; i < count; ++i)
        QTest::addRow("%d", zone * 1000 + i) << zone * 1000 + i;
}

void RehearsalTest::SkippingAheadChangesNothing()
{
    QFETCH(const int, seed);
    const RandomSchedule schedule(static_cast<std::uint32_t>(seed), MOST_LINES);
    const Workspace workspace(schedule.Path(), schedule.Folder());
    Rehearsal::Plan plan{schedule.Start_ms(), schedule.Start_ms(), schedule.Start_ms() + SPAN_MS};
    QStringList events;
    {
        Rehearsal rehearsal(workspace, plan);
        QVERIFY(rehearsal.Run());
        events = Requests(rehearsal);
        m_requests += events.size();
        events += Starts(rehearsal) + Missed(rehearsal);
        QCOMPARE(WronglyMissed(rehearsal), QStringList());
        m_passes += rehearsal.Passes();
    }
    plan.everyPass = true;
    Rehearsal slow(workspace, plan);
    QVERIFY(slow.Run());
    m_everyPass += slow.Passes();
    const QByteArray difference = TextDiff(Requests(slow) + Starts(slow) + Missed(slow), events, "event");
    if (!difference.isEmpty())
        qWarning("%s\n%s", schedule.Text().constData(), difference.constData()); // what QVERIFY2 would cut
    QVERIFY(difference.isEmpty());
}

// The clock is stepped, the schedule is loaded anew and a peer does not answer, at random; each pass of the timers is
// run in the one, and the daemon's own records are read.
void RehearsalTest::WhatIsMissedIsWhatTheDaemonLogs()
{
    QFETCH(const int, seed);
    CompareMissed(seed);
}

void RehearsalTest::APeerThatHoldsUpThePassesLeavesItsCause()
{
    const TimeZone there("Pacific/Apia");
    CompareMissed(700256);
}

void RehearsalTest::CompareMissed(int seed)
{
    const RandomSchedule schedule(static_cast<std::uint32_t>(seed), MOST_LINES);
    const Workspace workspace(schedule.Path(), schedule.Folder());
    Rehearsal::Plan plan{schedule.Start_ms(), schedule.Start_ms(), schedule.Start_ms() + SPAN_MS};
    std::vector<Event> events;
    {
        Rehearsal rehearsal(workspace, plan);
        QVERIFY(rehearsal.Run());
        events = rehearsal.Events();
    }
    plan = RandomPlan(static_cast<std::uint32_t>(seed), plan, events);
    plan.from_ms -= Moment::DAY_MS; // what passes once more when the calendar is put back
    QStringList missed;
    {
        Rehearsal rehearsal(workspace, plan);
        QVERIFY(rehearsal.Run());
        missed = Missed(rehearsal);
    }
    plan.everyPass = true;
    DaemonLog log(LEVEL_WARNING);
    Rehearsal slow(workspace, plan);
    QVERIFY(slow.Run());
    const QStringList expected = Missed(slow);
    const QStringList logged = log.Take().filter(QRegularExpression(u"^MISSED action"_s));
    const QByteArray difference = TextDiff(expected, missed, "missed start");
    if (!difference.isEmpty())
        qWarning("%s\n%s\n%s", schedule.Text().constData(), PlanText(plan).constData(), difference.constData());
    QVERIFY(difference.isEmpty());
    QCOMPARE(Counted(logged) - Behind(logged, slow.End()), expected.size());
    for (const QString& text : expected)
        ++m_causes[text.section(": "_L1, 1)];
}

// A disturbance that never comes has all events kept to the end.
void RehearsalTest::HandingOverEventsEarlyChangesNothing()
{
    QFETCH(const int, seed);
    constexpr qint64 WEEKS_MS = 20 * Moment::DAY_MS;
    const RandomSchedule schedule(static_cast<std::uint32_t>(seed), MOST_LINES);
    const Workspace workspace(schedule.Path(), schedule.Folder());
    Rehearsal::Plan plan{schedule.Start_ms(), schedule.Start_ms(), schedule.Start_ms() + WEEKS_MS};
    QStringList requests;
    QStringList starts;
    QStringList missed;
    size_t late = 0; // those that the end brought
    {
        Rehearsal rehearsal(workspace, plan);
        QVERIFY(rehearsal.Run([&](double) {
            late = rehearsal.Events().size();
            return true;
        }));
        late = rehearsal.Events().size() - late;
        requests = Requests(rehearsal);
        starts = Starts(rehearsal);
        missed = Missed(rehearsal);
        m_early += rehearsal.Events().size() - late;
    }
    plan.disturbances.push_back({2 * WEEKS_MS, 1});
    Rehearsal kept(workspace, plan);
    QVERIFY(kept.Run());
    const QByteArray difference = TextDiff(Requests(kept), requests, "request") +
                                  TextDiff(Starts(kept), starts, "start") +
                                  TextDiff(Missed(kept), missed, "missed start");
    if (!difference.isEmpty())
        qWarning("%s\n%s", schedule.Text().constData(), difference.constData());
    QVERIFY(difference.isEmpty());
}

void RehearsalTest::OneMayEndItInTheMiddleOfADay()
{
    const RandomSchedule schedule(1, 2000);
    const Workspace workspace(schedule.Path(), schedule.Folder());
    Rehearsal rehearsal(workspace, {schedule.Start_ms(), schedule.Start_ms(), schedule.Start_ms() + SPAN_MS});
    std::vector<double> parts;
    QVERIFY(!rehearsal.Run([&](double part) {
        parts.push_back(part);
        return parts.size() < 3;
    }));
    QCOMPARE(parts.size(), size_t{3});
    QVERIFY(std::ranges::is_sorted(parts));
    QVERIFY(parts[2] < 0.25);
    QVERIFY(!rehearsal.Events().empty());
}

void RehearsalTest::AChangeOfTheClocksIsPartOfTheSpanThatItBegins()
{
    const TimeZone here("Europe/Rome");
    constexpr qint64 CHANGE_MS = 1711846800000; // 2024-03-31, 02:00:00
    constexpr qint64 HOUR_MS = 3600000;
    QVERIFY(ClockChange::Between(CHANGE_MS - HOUR_MS, CHANGE_MS).empty());
    const std::vector<ClockChange> changes = ClockChange::Between(CHANGE_MS - HOUR_MS, CHANGE_MS + 1);
    QCOMPARE(changes.size(), size_t{1});
}

void RehearsalTest::cleanupTestCase()
{
    for (auto cause = m_causes.cbegin(); cause != m_causes.cend(); ++cause)
        qInfo("%d missed: %s", cause.value(), qPrintable(cause.key()));
    qInfo("%lld requests; %lld passes instead of %lld", m_requests, m_passes, m_everyPass);
    QVERIFY(m_requests > OZNA_SEEDS * 10);
    QVERIFY(m_early > 0);
    QVERIFY(m_passes < m_everyPass / 10);
    QVERIFY(m_causes.size() >= OZNA_SEEDS / 10 - 1);
}

OZNA_CASE(Rehearsal, RehearsalTest)
#include "tst_Rehearsal.moc"

#include "ClockChange.h"
#include "RandomSchedule.h"
#include "Rehearsal.h"
#include "TextDiff.h"
#include "TimeZone.h"
#include "Workspace.h"

#include <QTest>

#include <algorithm>

namespace
{

constexpr int MOST_LINES = 50;
constexpr qint64 SPAN_MS = 2LL * 86400 * 1000;

QStringList Requests(const Rehearsal& rehearsal)
{
    QStringList texts;
    for (const Event& event : rehearsal.Events())
    {
        for (const Request& request : event.requests)
            texts.append(
                QStringLiteral("%1 line %2: %3").arg(request.moment_ms).arg(event.lineNumber).arg(request.Text()));
    }
    return texts;
}

// When what begins to play ends, and what is started how.
QStringList Starts(const Rehearsal& rehearsal)
{
    QStringList texts;
    for (const Event& event : rehearsal.Events())
    {
        if (event.kind != EventKind::MISSED)
            texts.append(
                QStringLiteral("%1 line %2: kind %3, due %4, delay %5, forced %6, repeated %7, %8 to %9 by %10")
                    .arg(event.moment_ms)
                    .arg(event.lineNumber)
                    .arg(static_cast<int>(event.kind))
                    .arg(event.due_ms)
                    .arg(event.delay_s)
                    .arg(event.isForced)
                    .arg(event.isRepeated)
                    .arg(event.begin_ms)
                    .arg(event.end_ms)
                    .arg(event.stoppedByLine));
    }
    return texts;
}

// What is called missed though it was started in time.
QStringList WronglyMissed(const Rehearsal& rehearsal)
{
    QStringList texts;
    for (const Event& missed : rehearsal.Events())
    {
        const bool isStarted = std::ranges::any_of(rehearsal.Events(), [&](const Event& event) {
            return event.kind == EventKind::START && event.delay_s == 0 && event.lineNumber == missed.lineNumber &&
                   event.due_ms == missed.due_ms;
        });
        if (missed.kind == EventKind::MISSED && isStarted)
            texts.append(QStringLiteral("%1 line %2").arg(missed.due_ms).arg(missed.lineNumber));
    }
    return texts;
}

} // namespace

// What a rehearsal leaves out is what would have found nothing.
class RehearsalTest final : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void SkippingAheadChangesNothing_data();
    void SkippingAheadChangesNothing();
    void OneMayEndItInTheMiddleOfADay();
    void AChangeOfTheClocksIsPartOfTheSpanThatItBegins();
    void cleanupTestCase();

private:
    qint64 m_requests = 0;
    qint64 m_passes = 0;
    qint64 m_everyPass = 0;
};

void RehearsalTest::SkippingAheadChangesNothing_data()
{
    QTest::addColumn<int>("seed");
    // Each zone has seeds of its own.
    int zone = 0;
    for (const char letter : qgetenv("TZ"))
        zone += letter;
    for (int i = 0; i < OZNA_SEEDS; ++i)
        QTest::addRow("%d", zone * 1000 + i) << zone * 1000 + i;
}

void RehearsalTest::SkippingAheadChangesNothing()
{
    QFETCH(const int, seed);
    const RandomSchedule schedule(static_cast<std::uint32_t>(seed), MOST_LINES);
    const Workspace workspace(schedule.Path(), schedule.Folder());
    Rehearsal::Plan plan{schedule.Start_ms(), schedule.Start_ms(), schedule.Start_ms() + SPAN_MS};
    QStringList requests;
    QStringList starts;
    {
        Rehearsal rehearsal(plan);
        QVERIFY(rehearsal.Run());
        requests = Requests(rehearsal);
        starts = Starts(rehearsal);
        QCOMPARE(WronglyMissed(rehearsal), QStringList());
        m_passes += rehearsal.Passes();
    }
    plan.everyPass = true;
    Rehearsal slow(plan);
    QVERIFY(slow.Run());
    m_everyPass += slow.Passes();
    m_requests += requests.size();
    const QByteArray difference =
        TextDiff(Requests(slow), requests, "request") + TextDiff(Starts(slow), starts, "start");
    if (!difference.isEmpty())
        qWarning("%s\n%s", schedule.Text().constData(), difference.constData()); // what QVERIFY2 would cut
    QVERIFY(difference.isEmpty());
}

void RehearsalTest::OneMayEndItInTheMiddleOfADay()
{
    const RandomSchedule schedule(1, 2000);
    const Workspace workspace(schedule.Path(), schedule.Folder());
    Rehearsal rehearsal({schedule.Start_ms(), schedule.Start_ms(), schedule.Start_ms() + SPAN_MS});
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
    qInfo("%lld requests; %lld passes instead of %lld", m_requests, m_passes, m_everyPass);
    QVERIFY(m_requests > OZNA_SEEDS * 10);
    QVERIFY(m_passes < m_everyPass / 10);
}

int main(int argc, char* argv[])
{
    Workspace::PrepareProcess();
    const QCoreApplication application(argc, argv);
    RehearsalTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_Rehearsal.moc"

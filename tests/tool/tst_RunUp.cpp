#include "RandomSchedule.h"
#include "Suite.h"
#include "TextDiff.h"
#include "TimeZone.h"
#include "engine/Rehearsal.h"
#include "engine/RunUp.h"
#include "engine/ScheduleLine.h"
#include "engine/Workspace.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

constexpr int MOST_LINES = 50;

// A stream that plays when a span begins, and that nothing has ever stopped: which one it is depends on the load.
constexpr qint64 UNKNOWN = -2;

// What a span of time brings, as a rehearsal tells it that has been running for long.
struct Window
{
    qint64 from_ms;
    qint64 until_ms;
    bool areStreamsOlder = false;
    std::vector<Event> events = {};
};

Window Rehearsed(const Workspace& workspace, const std::vector<ScheduleLine>& lines, qint64 from_ms, qint64 until_ms)
{
    const RunUp::Start start = RunUp(lines).Before(from_ms, until_ms);
    Rehearsal rehearsal(workspace,
                        {.start_ms = start.moment_ms, .from_ms = from_ms, .until_ms = until_ms, .isSettled = true});
    if (!rehearsal.Run())
        return {};
    return {from_ms, until_ms, start.areStreamsOlder, rehearsal.TakeEvents()};
}

QString RequestTexts(const Event& event)
{
    QStringList texts;
    for (const Request& request : event.requests)
        texts.append(u"%1 %2"_s.arg(request.moment_ms).arg(request.Text()));
    return texts.join(u"; "_s);
}

// The events from from_ms up to until_ms, and what plays at from_ms.
QStringList Texts(const Window& window, qint64 from_ms, qint64 until_ms, bool areStreamsOlder)
{
    QStringList texts;
    for (const Event& event : window.events)
    {
        const bool isBefore = event.moment_ms < from_ms;
        // Its end shows only where the window reaches it.
        const qint64 end_ms = event.end_ms == Event::OPEN || event.end_ms >= until_ms ? Event::OPEN : event.end_ms;
        if (event.moment_ms >= until_ms || (isBefore && (!event.plays || (end_ms != Event::OPEN && end_ms <= from_ms))))
            continue;
        const bool isUnknown = isBefore && areStreamsOlder && event.type == TASK_PLAY_STREAM;
        texts.append(u"%1 line %2: kind %3, due %4, delay %5, forced %6, repeated %7, to %8 by %9, risk %10, %11, %12"_s
                         .arg(isUnknown ? UNKNOWN : event.moment_ms)
                         .arg(isUnknown ? UNKNOWN : event.lineNumber)
                         .arg(static_cast<int>(event.kind))
                         .arg(isUnknown ? UNKNOWN : event.due_ms)
                         .arg(event.delay_s)
                         .arg(event.isForced)
                         .arg(!isUnknown && event.isRepeated)
                         .arg(end_ms)
                         .arg(end_ms == Event::OPEN ? 0 : event.stoppedByLine)
                         .arg(isBefore ? 0 : event.riskLine)
                         .arg(isUnknown ? QString() : event.reason, isUnknown ? QString() : RequestTexts(event)));
    }
    return texts;
}

} // namespace

// At the same moment the same happens, wherever a rehearsal begins.
class RunUpTest final : public QObject
{
    Q_OBJECT
public:
    static void initMain() { Workspace::PrepareProcess(); }

private Q_SLOTS:
    void ItBeginsWhereTheScheduleNeedsIt_data();
    void ItBeginsWhereTheScheduleNeedsIt();
    void OverlappingWindowsAgree_data();
    void OverlappingWindowsAgree();
    void cleanupTestCase();

private:
    qsizetype m_compared = 0;
};

void RunUpTest::ItBeginsWhereTheScheduleNeedsIt_data()
{
    QTest::addColumn<QByteArray>("schedule");
    QTest::addColumn<QDate>("begin");
    QTest::addColumn<QStringList>("playing"); // on 15 May 2024: the line, and since when

    const QDate usual(2024, 5, 7);
    QTest::newRow("no lines") << QByteArray() << usual << QStringList();
    QTest::newRow("lines by the day of the week")
        << QByteArray("1111100|08:00:00|*|*|*|||PlayMessage|gong.mp3\n1000000|20:00:00|*|*|*|||Light|40\n"
                      "0000010|20:00:00|*|*|*|||PlayRadioFm|98.5\n")
        << usual << QStringList{u"3 2024-05-11"_s};
    QTest::newRow("a playlist that plays for a day")
        << QByteArray("1000000|20:00:00|*|*|*|||PlayPlaylist|day\n") << QDate(2024, 5, 6) << QStringList();
    QTest::newRow("a stream without a stop, begun a month ago")
        << QByteArray("0000000|08:00:00|15|4|2024|||PlayStream|1/a\n") << QDate(2024, 4, 13)
        << QStringList{u"1 2024-04-15"_s};
    QTest::newRow("one that began before the line ended, years ago")
        << QByteArray("1111111|08:00:00|*|*|*|20210601|20210630|PlayStream|1/a\n") << QDate(2021, 5, 30)
        << QStringList{u"1 2021-06-01"_s};
    QTest::newRow("one that a stop has ended since")
        << QByteArray("0000000|08:00:00|15|4|2024|||PlayStream|1/a\n1000000|09:00:00|*|*|*|||StopStream\n") << usual
        << QStringList();
    QTest::newRow("a radio of last year") << QByteArray("0000000|08:00:00|1|12|*|||PlayRadioFm|98.5\n")
                                          << QDate(2023, 11, 29) << QStringList{u"1 2023-12-01"_s};
    QTest::newRow("one that another line has switched off")
        << QByteArray("0000000|08:00:00|1|12|*|||PlayRadioFm|98.5\n0000000|08:00:00|3|1|*|||PlayRadioFm|0\n")
        << QDate(2024, 1, 1) << QStringList();
    QTest::newRow("a light of a leap day")
        << QByteArray("0000000|08:00:00|29|2|*|||Light|40\n") << QDate(2024, 2, 27) << QStringList();
    QTest::newRow("a playlist of one day of the year plays whether it has been played or not")
        << QByteArray("0000000|08:00:00|24|12|*|||PlayPlaylist|short\n") << QDate(2024, 5, 6) << QStringList();
    QTest::newRow("unless it may be joined late")
        << QByteArray("0000000|00:00:01|24|12|*|||PlayPlaylist|short\n") << QDate(2023, 12, 23) << QStringList();
    QTest::newRow("lines of one second that start in the order of last year")
        << QByteArray("0000000|08:00:00|20|6|*|||Volume|50\n0000000|08:00:00|*|6|*|||Volume|60\n"
                      "1111111|09:00:00|*|*|*|||Volume|70\n")
        << QDate(2023, 6, 28) << QStringList();
    QTest::newRow("and lines that never meet")
        << QByteArray("0000000|08:00:00|20|6|*|||Volume|50\n0000000|08:00:00|21|6|*|||Volume|60\n"
                      "1111111|09:00:00|*|*|*|||Volume|70\n")
        << usual << QStringList();
}

void RunUpTest::ItBeginsWhereTheScheduleNeedsIt()
{
    QFETCH(const QByteArray, schedule);
    QFETCH(const QDate, begin);
    QFETCH(const QStringList, playing);
    const TimeZone here("Europe/Rome");
    const QTemporaryDir folder;
    const auto write = [&](const char* name, const QByteArray& content) {
        QFile file(folder.filePath(QString::fromLatin1(name)));
        return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
    };
    QVERIFY(write("schedule.csv", schedule) && write("short", "first.mp3;60\nlast.mp3;60\n") &&
            write("day", "first.mp3;43000\nlast.mp3;43300\n"));
    const Workspace workspace(folder.filePath(u"schedule.csv"_s), folder.path());
    const std::vector<ScheduleLine> lines = ScheduleLine::ReadFile(workspace, u"schedule.csv"_s);
    const qint64 from_ms = Moment::FromLocal_ms(QDate(2024, 5, 15), QTime(0, 0));
    const qint64 until_ms = from_ms + 365 * Moment::DAY_MS;
    QCOMPARE(Moment::LocalDate(RunUp(lines).Before(from_ms, until_ms).moment_ms), begin);
    QStringList found;
    for (const Event& event : Rehearsed(workspace, lines, from_ms, from_ms + 1000).events)
    {
        if (event.moment_ms < from_ms)
            found.append(
                u"%1 %2"_s.arg(event.lineNumber).arg(Moment::LocalDate(event.moment_ms).toString(Qt::ISODate)));
    }
    QCOMPARE(found, playing);
}

void RunUpTest::OverlappingWindowsAgree_data()
{
    QTest::addColumn<int>("seed");
    int zone = 0;
    for (const char letter : qgetenv("TZ"))
        zone += letter;
    const int first = qEnvironmentVariableIntValue("OZNA_FIRST_SEED");
    for (int i = first; i < first + OZNA_SEEDS; ++i)
        QTest::addRow("%d", zone * 1000 + i) << zone * 1000 + i;
}

void RunUpTest::OverlappingWindowsAgree()
{
    QFETCH(const int, seed);
    const RandomSchedule schedule(static_cast<std::uint32_t>(seed), MOST_LINES);
    const Workspace workspace(schedule.Path(), schedule.Folder());
    const std::vector<ScheduleLine> lines = ScheduleLine::ReadFile(workspace, u"schedule.csv"_s);
    std::mt19937 random(static_cast<std::uint32_t>(seed));
    const auto below = [&](qint64 bound) { return static_cast<qint64>(random()) % bound; };
    // One begins about the days for which the schedule has lines of their own, the other days, weeks or years later.
    constexpr qint64 LATER_DAYS[] = {3, 42, 800};
    const qint64 first_ms = schedule.Start_ms() / 1000 * 1000 - below(4 * Moment::DAY_S) * 1000;
    const qint64 second_ms = first_ms + below(LATER_DAYS[below(3)] * Moment::DAY_S) * 1000;
    const qint64 until_ms = second_ms + (1 + below(3 * Moment::DAY_S)) * 1000;
    const Window earlier = Rehearsed(workspace, lines, first_ms, until_ms + below(2 * Moment::DAY_S) * 1000);
    const Window later = Rehearsed(workspace, lines, second_ms, until_ms);
    const bool areStreamsOlder = earlier.areStreamsOlder || later.areStreamsOlder;
    const QStringList expected = Texts(earlier, second_ms, until_ms, areStreamsOlder);
    m_compared += expected.size();
    const QByteArray difference = TextDiff(expected, Texts(later, second_ms, until_ms, areStreamsOlder), "event");
    if (!difference.isEmpty())
        qWarning("%s\n%lld %lld %lld\n%s", schedule.Text().constData(), first_ms, second_ms, until_ms,
                 difference.constData());
    QVERIFY(difference.isEmpty());
}

void RunUpTest::cleanupTestCase()
{
    qInfo("%lld events compared", m_compared);
    QVERIFY(m_compared > OZNA_SEEDS);
}

OZNA_CASE(RunUp, RunUpTest)
#include "tst_RunUp.moc"

#include "RandomSchedule.h"
#include "Suite.h"
#include "TextDiff.h"
#include "TimeZone.h"
#include "base/Moment.h"
#include "engine/ClockChange.h"
#include "engine/Rehearsal.h"
#include "engine/Workspace.h"

#include <QDateTime>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <map>
#include <set>

using namespace Qt::StringLiterals;

namespace
{

constexpr int PHASES = 30;
constexpr qint64 PHASE_MS = Event::PHASES_MS / PHASES;
constexpr qint64 MINUTE_MS = 60 * Moment::MS_PER_S;

qint64 Utc_ms(const QString& text)
{
    return QDateTime::fromString(text + u'Z', Qt::ISODate).toMSecsSinceEpoch();
}

// A line at one of its times.
using Start = std::pair<int, qint64>;

// What phases of the daemon's timers give.
class Survey final
{
public:
    // Runs each pass of the timers.
    Survey(const Workspace& workspace, qint64 from_ms, qint64 until_ms)
    {
        for (int phase = 0; phase < PHASES; ++phase)
        {
            const qint64 start_ms = from_ms - MINUTE_MS + phase * PHASE_MS + PHASE_MS / 2;
            Rehearsal rehearsal(workspace, {start_ms, from_ms, until_ms, true});
            if (!rehearsal.Run())
                qFatal("not run to its end");
            Count(rehearsal.Events());
        }
    }

    // "line 1 at 2024-05-16T00:00:01+02:00: 10 of 30", of all whose number is neither none nor all.
    [[nodiscard]] QStringList Found() const
    {
        QStringList texts;
        for (const auto& [start, count] : m_found)
        {
            if (count < PHASES && !m_skipped.contains(start))
                texts.append(Text(start, count));
        }
        return texts;
    }

    // The same as the marks say it, in every phase; what one phase says otherwise is a text of its own.
    [[nodiscard]] QStringList Marked() const
    {
        QStringList texts;
        for (const auto& [start, marks] : m_marked)
        {
            for (const auto& [phases_ms, count] : marks)
            {
                if (!m_skipped.contains(start))
                    texts.append(Text(start, static_cast<int>(phases_ms / PHASE_MS)) +
                                 (count == PHASES ? QString() : u", say %1 of them"_s.arg(count)));
            }
        }
        return texts;
    }

private:
    static QString Text(const Start& start, int count)
    {
        return u"line %1 at %2: %3 of %4"_s.arg(start.first).arg(Moment::IsoText(start.second)).arg(count).arg(PHASES);
    }

    void Count(const std::vector<Event>& events)
    {
        std::set<Start> found;
        std::map<Start, int> marked;
        for (const Event& event : events)
        {
            const Start start{event.lineNumber, event.due_ms};
            if (event.kind == EventKind::START && !event.isForced)
                found.insert(start);
            if (event.kind == EventKind::SKIPPED)
                m_skipped.insert(start);
            if (event.IsByChance())
                marked.emplace(start, event.phases_ms);
        }
        for (const Start& start : found)
            ++m_found[start];
        for (const auto& [start, phases_ms] : marked)
            ++m_marked[start][phases_ms];
    }

    std::map<Start, int> m_found;
    std::map<Start, std::map<int, int>> m_marked; // in how many phases which number of them is told
    std::set<Start> m_skipped;                    // whose stop is near: another matter
};

} // namespace

// What a rehearsal marks as coming by chance is what some phases of the daemon's timers find, and others do not.
class ChancesTest final : public QObject
{
    Q_OBJECT
public:
    static void initMain() { Workspace::PrepareProcess(); }

private Q_SLOTS:
    void MarksAreWhatThePhasesGive_data();
    void MarksAreWhatThePhasesGive();
    void RandomSchedulesAreMarkedAsTheirPhasesGive_data();
    void RandomSchedulesAreMarkedAsTheirPhasesGive();
};

void ChancesTest::MarksAreWhatThePhasesGive_data()
{
    QTest::addColumn<QByteArrayList>("lines");
    QTest::addColumn<QByteArray>("zone");
    QTest::addColumn<QString>("from");
    QTest::addColumn<int>("minutes");
    QTest::addColumn<QStringList>("found");

    const auto row = [](const char* name, const QByteArrayList& lines, const char* zone, const char* from, int minutes,
                        const QStringList& found) {
        QTest::newRow(name) << lines << QByteArray(zone) << QString::fromLatin1(from) << minutes << found;
    };
    row("midnight",
        {"1111111|00:00:00|*|*|*|||Volume|1", "1111111|00:00:01|*|*|*|||Volume|1", "1111111|00:00:02|*|*|*|||Volume|1",
         "1111111|00:00:03|*|*|*|||Volume|1", "1111111|24:00:00|*|*|*|||Volume|1", "1111111|25:00:00|*|*|*|||Volume|1",
         "1111111|-1:00:00|*|*|*|||Volume|1", "1111111|23:59:59|*|*|*|||Volume|1"},
        "UTC", "2024-05-15T23:59:00", 2,
        {u"line 2 at 2024-05-16T00:00:01+00:00: 10 of 30"_s, u"line 3 at 2024-05-16T00:00:02+00:00: 20 of 30"_s});
    row("a message is no exception", {"1111111|00:00:01|*|*|*|||PlayMessage|a.mp3"}, "UTC", "2024-05-15T23:59:00", 2,
        {u"line 1 at 2024-05-16T00:00:01+00:00: 10 of 30"_s});
    row("a playlist that may be late is found all the same",
        {"1111111|00:00:01|*|*|*|||PlayPlaylist|long", "1111111|00:00:00|*|*|*|||PlayPlaylist|long",
         "1111111|00:00:01|*|*|*|||PlayPlaylist|single"},
        "UTC", "2024-05-15T23:59:00", 2, {u"line 3 at 2024-05-16T00:00:01+00:00: 10 of 30"_s});
    row("a playlist of the second day has played", {"1111111|00:00:01|*|*|*|||PlayPlaylist|long"}, "UTC",
        "2024-05-15T23:59:00", 24 * 60 + 2, {u"line 1 at 2024-05-17T00:00:01+00:00: 10 of 30"_s});
    row("a spot date begins with UTC",
        {"0000000|02:00:00|16|5|*|||Volume|1", "0000000|02:00:01|16|5|*|||Volume|1",
         "0000000|02:00:02|16|5|*|||Volume|1", "1111111|02:00:01|16|5|*|||Volume|1"},
        "Europe/Rome", "2024-05-15T23:59:00", 2,
        {u"line 2 at 2024-05-16T02:00:01+02:00: 10 of 30"_s, u"line 3 at 2024-05-16T02:00:02+02:00: 20 of 30"_s});
    row("the clocks are put forward",
        {"1111111|02:30:00|*|*|*|||Volume|1", "1111111|03:00:00|*|*|*|||Volume|1", "1111111|03:00:01|*|*|*|||Volume|1",
         "1111111|03:00:02|*|*|*|||Volume|1", "1111111|03:00:03|*|*|*|||Volume|1", "1111111|02:00:05|*|*|*|||Volume|1",
         "1111111|02:00:07|*|*|*|||PlayMessage|a.mp3", "1111111|02:00:11|*|*|*|||Volume|1"},
        "Europe/Rome", "2024-03-31T00:59:00", 2,
        {u"line 3 at 2024-03-31T03:00:01+02:00: 10 of 30"_s, u"line 4 at 2024-03-31T03:00:02+02:00: 20 of 30"_s});
    row("the clocks are put back",
        {"1111111|02:00:00|*|*|*|||Volume|1", "1111111|02:00:01|*|*|*|||Volume|1", "1111111|02:00:02|*|*|*|||Volume|1",
         "1111111|02:00:03|*|*|*|||Volume|1", "0000001|02:00:02|*|*|*|||PlayMessage|a.mp3"},
        "Europe/Rome", "2024-10-26T23:59:00", 62,
        {u"line 2 at 2024-10-27T02:00:01+01:00: 10 of 30"_s, u"line 3 at 2024-10-27T02:00:02+01:00: 20 of 30"_s,
         u"line 5 at 2024-10-27T02:00:02+01:00: 20 of 30"_s});
    row("a stream that was stopped right before",
        {"1111111|08:00:00|*|*|*|||PlayStream|1/a", "1111111|07:59:58|*|*|*|||StopStream"}, "UTC",
        "2024-05-15T07:59:30", 24 * 60 + 1, {u"line 1 at 2024-05-16T08:00:00+00:00: 20 of 30"_s});
    row("a stream that plays on is missed in every phase", {"1111111|08:00:00|*|*|*|||PlayStream|1/a"}, "UTC",
        "2024-05-15T07:59:30", 24 * 60 + 1, {});
}

void ChancesTest::MarksAreWhatThePhasesGive()
{
    QFETCH(const QByteArrayList, lines);
    QFETCH(const QByteArray, zone);
    QFETCH(const QString, from);
    QFETCH(const int, minutes);
    QFETCH(const QStringList, found);
    const TimeZone here(zone.constData());
    const QTemporaryDir folder;
    const auto write = [&folder](const QString& name, const QByteArray& content) {
        QFile file(folder.filePath(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            qFatal("no file");
    };
    write(u"schedule.csv"_s, lines.join('\n') + '\n');
    write(u"long"_s, "first.mp3;60\nsecond.mp3;60\n");
    write(u"single"_s, "first.mp3;60\n");
    const Workspace workspace(folder.filePath(u"schedule.csv"_s), folder.path());
    const qint64 from_ms = Utc_ms(from);
    const Survey survey(workspace, from_ms, from_ms + minutes * MINUTE_MS);
    QCOMPARE(survey.Found(), found);
    QCOMPARE(survey.Marked(), found);
}

void ChancesTest::RandomSchedulesAreMarkedAsTheirPhasesGive_data()
{
    QTest::addColumn<QByteArray>("zone");
    QTest::addColumn<int>("seed");
    int seed = 0;
    for (const char* zone : {"UTC", "Europe/Rome", "America/New_York", "Australia/Lord_Howe", "Asia/Kathmandu"})
    {
        for (int i = 0; i < OZNA_CHANCE_SEEDS; ++i)
            QTest::addRow("%s %d", zone, i) << QByteArray(zone) << ++seed;
    }
}

// Around midnight, midnight in UTC and a change of the clocks.
void ChancesTest::RandomSchedulesAreMarkedAsTheirPhasesGive()
{
    QFETCH(const QByteArray, zone);
    QFETCH(const int, seed);
    const TimeZone here(zone.constData());
    const RandomSchedule schedule(static_cast<std::uint32_t>(seed), 400);
    const Workspace workspace(schedule.Path(), schedule.Folder());
    std::vector<qint64> moments{
        Moment::FromLocal_ms(Moment::LocalDate(schedule.Start_ms()).addDays(1), QTime(0, 0)),
        (schedule.Start_ms() / Moment::DAY_MS + 1) * Moment::DAY_MS,
    };
    for (const ClockChange& change :
         ClockChange::Between(schedule.Start_ms(), schedule.Start_ms() + 366 * Moment::DAY_MS))
        moments.push_back(change.moment_ms);
    for (const qint64 moment_ms : moments)
    {
        const Survey survey(workspace, moment_ms - MINUTE_MS / 2, moment_ms + MINUTE_MS / 2);
        const QByteArray difference = TextDiff(survey.Found(), survey.Marked(), "mark");
        if (!difference.isEmpty())
            qWarning("%s\n%s", schedule.Text().constData(), difference.constData());
        QVERIFY(difference.isEmpty());
    }
}

OZNA_CASE(Chances, ChancesTest)
#include "tst_Chances.moc"

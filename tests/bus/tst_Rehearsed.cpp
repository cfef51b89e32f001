#include "BusTest.h"
#include "RandomSchedule.h"
#include "Suite.h"
#include "base/Moment.h"
#include "engine/Rehearsal.h"
#include "engine/ScheduleLine.h"
#include "engine/Workspace.h"

#include <QDBusMetaType>
#include <QDir>

#include <algorithm>
#include <map>

using namespace Qt::StringLiterals;

// What ozna-schedule says that the daemon will ask for is what the real process asks the device for: random schedules
// over two days, under a clock that is stepped from one start to the next, and to those that do not come.
class Rehearsed : public BusTest
{
    Q_OBJECT
private Q_SLOTS:
    void TheProcessAsksForTheSame_data()
    {
        QTest::addColumn<int>("seed");
        for (int seed = 1; seed <= OZNA_REAL_SEEDS; ++seed)
            QTest::addRow("%d", seed) << seed;
    }
    void TheProcessAsksForTheSame();

private:
    // What belongs to one second of the schedule.
    struct Step
    {
        QList<const Event*> starts;
        QList<const Event*> lates; // found after their time, or forced
        QList<const Event*> ends;  // of playbacks
        bool isDue = false;        // some line has this time of day
    };
    using Steps = std::map<qint64, Step>; // by the moment, in ms

    [[nodiscard]] static Steps StepsOf(const Rehearsal& rehearsal, const std::vector<ScheduleLine>& lines,
                                       qint64 begin_ms, qint64 end_ms);
    void Begin(const QByteArray& schedule, const QString& folder);
    void FollowStart(const Rehearsal& rehearsal, qint64 begin_ms);
    void Follow(qint64 moment_ms, const Step& step);
    void Expect(const QList<const Event*>& events);
    void Tell(const Step& step);

    [[nodiscard]] qsizetype Count(const char* text);

    qsizetype m_requests = 0;
};

namespace
{

constexpr int LINES = 40;
constexpr const char* ZONE = "Europe/Rome";
constexpr qint64 AHEAD_MS = 10'000;
constexpr qint64 FIRST_PASS_MS = Scheduler::FAR_INTERVAL_MS + Scheduler::EARLY_INTERVAL_MS;
constexpr const char* EARLY = "EARLY action found";

// Both changes of the clocks, and a time before which a playlist of the night may have begun.
constexpr const char* BEGINS[] = {"2024-03-30T05:17:03", "2024-10-26T05:17:03", "2024-05-15T13:00:00",
                                  "2024-12-31T03:00:00"};

const QString PDD_PEER = u"scheduler"_s;

qint64 BeginOf(int seed)
{
    return Moment::Parse_ms({}, QString::fromLatin1(BEGINS[static_cast<size_t>(seed) % std::size(BEGINS)]));
}

// As the simulated device shows a call.
QString Shown(const Request& request)
{
    QString signature;
    QString values;
    const QStringList texts = request.ArgumentTexts();
    for (qsizetype i = 0; i < texts.size(); ++i)
    {
        const QVariant& value = request.arguments[i];
        signature += QLatin1String(QDBusMetaType::typeToSignature(value.metaType()));
        const bool isByte = value.metaType() == QMetaType::fromType<uchar>();
        values += u' ' + (isByte ? texts[i] : value.toString());
    }
    return u"%1.%2 %3%4"_s.arg(QString(request.peer).remove(u"manager"_s), request.method,
                               signature.isEmpty() ? u"-"_s : signature, values);
}

} // namespace

Rehearsed::Steps Rehearsed::StepsOf(const Rehearsal& rehearsal, const std::vector<ScheduleLine>& lines, qint64 begin_ms,
                                    qint64 end_ms)
{
    Steps steps;
    for (const Event& event : rehearsal.Events())
    {
        const bool isLate = event.isForced || event.delay_s > 0;
        if (event.kind == EventKind::START && isLate && event.moment_ms > begin_ms + FIRST_PASS_MS)
            steps[event.moment_ms].lates.append(&event);
        else if (event.kind == EventKind::START && !isLate)
            steps[event.due_ms].starts.append(&event);
        if (event.plays && event.end_ms != Event::OPEN)
            steps[event.end_ms].ends.append(&event);
        if (event.kind == EventKind::MISSED)
            steps[event.due_ms].isDue = true;
    }
    for (const ScheduleLine& line : lines)
    {
        for (qint64 day_ms = begin_ms; line.action != nullptr && day_ms < end_ms; day_ms += Moment::DAY_MS)
        {
            const qint64 moment_ms = Moment::FromLocal_ms(Moment::LocalDate(day_ms), line.action->m_startTime);
            if (moment_ms > begin_ms && moment_ms < end_ms)
                steps[moment_ms].isDue = true;
        }
    }
    return steps;
}

void Rehearsed::Begin(const QByteArray& schedule, const QString& folder)
{
    WriteSchedule(schedule);
    const QDir source(folder);
    for (const QString& name : source.entryList(QDir::Files))
    {
        if (name != "schedule.csv"_L1)
            QVERIFY(QFile::copy(source.filePath(name), DataPath(u"playlists/"_s + name)));
    }
    Daemon().Environment().insert(u"TZ"_s, QLatin1String(ZONE));
    Daemon().Environment().insert(u"OZNA_LOG_LEVEL"_s, u"9"_s);
}

qsizetype Rehearsed::Count(const char* text)
{
    return Daemon().Log().filter(QLatin1String(text)).size();
}

void Rehearsed::Expect(const QList<const Event*>& events)
{
    QStringList calls;
    qsizetype announced = 0;
    for (const Event* event : events)
    {
        for (const Request& request : event->requests)
        {
            if (request.peer == PDD_PEER)
                ++announced;
            else
                calls.append(Shown(request));
        }
    }
    // Too few show in the comparison.
    static_cast<void>(Device().WaitForCalls(calls.size()));
    QCOMPARE(Client().WaitForSignals(announced).size(), announced);
    QCOMPARE(Client().Call("IsEnabled"), u"0,true,schedule.csv"_s);
    // Which of them are asked for ahead depends on when the daemon has found them.
    QStringList found = Device().Calls();
    found.sort();
    calls.sort();
    COMPARE_LINES(found, calls);
    Device().Forget();
    m_requests += calls.size() + announced;
}

void Rehearsed::FollowStart(const Rehearsal& rehearsal, qint64 begin_ms)
{
    QList<const Event*> events;
    for (const Event& event : rehearsal.Events())
    {
        if (event.kind == EventKind::START && event.moment_ms <= begin_ms + FIRST_PASS_MS)
            events.append(&event);
    }
    QVERIFY(WaitForPasses());
    Expect(events);
}

// Nothing is sent that no pass has found early.
void Rehearsed::Follow(qint64 moment_ms, const Step& step)
{
    if (!step.starts.isEmpty() || step.isDue)
    {
        const qsizetype before = Count(EARLY);
        Time().Set(QDateTime::fromMSecsSinceEpoch(moment_ms - AHEAD_MS));
        QVERIFY(WaitForPasses());
        QVERIFY(WaitUntil([&] { return Count(EARLY) >= before + step.starts.size(); }));
        QCOMPARE(Count(EARLY), before + step.starts.size());
        Time().Set(QDateTime::fromMSecsSinceEpoch(moment_ms));
        Expect(step.starts);
    }
    if (!step.lates.isEmpty())
    {
        Time().Set(QDateTime::fromMSecsSinceEpoch(moment_ms));
        Expect(step.lates);
    }
    Tell(step);
}

// The device's part.
void Rehearsed::Tell(const Step& step)
{
    for (const Event* event : step.ends)
    {
        if (event->type == TASK_PLAY_MESSAGE)
            Device().Emit("sound.PlayFileCompleted", {QString()});
        else if (event->type == TASK_PLAY_PLAYLIST)
            Device().Emit("sound.PlayPlaylistCompleted", {QString()});
    }
    for (const Event* event : step.starts)
    {
        if (event->type == TASK_RECORD_PHOTO)
            Device().Emit("photo.PhotoTaken", {0, QString()});
    }
}

void Rehearsed::TheProcessAsksForTheSame()
{
    QFETCH(const int, seed);
    qputenv("TZ", ZONE);
    ::tzset();
    const RandomSchedule schedule(static_cast<std::uint32_t>(seed), LINES, RandomSchedule::TAME);
    const Workspace workspace(schedule.Path(), schedule.Folder());
    const qint64 begin_ms = BeginOf(seed);
    const qint64 end_ms = begin_ms + 2 * Moment::DAY_MS;
    Rehearsal rehearsal(workspace, {begin_ms, begin_ms, end_ms});
    QVERIFY(rehearsal.Run());
    const std::vector<ScheduleLine> lines = ScheduleLine::ReadFile(workspace, schedule.Path());

    Begin(schedule.Text(), schedule.Folder());
    Time().Set(QDateTime::fromMSecsSinceEpoch(begin_ms));
    QVERIFY(StartDaemon());
    FollowStart(rehearsal, begin_ms);
    for (const auto& [moment_ms, step] : StepsOf(rehearsal, lines, begin_ms, end_ms))
    {
        Follow(moment_ms, step);
        if (QTest::currentTestFailed())
        {
            qWarning("%s at %s", schedule.Text().constData(), qPrintable(Moment::IsoText(moment_ms)));
            return;
        }
    }
    static_cast<void>(Daemon().Take());
    qInfo("%lld requests", qlonglong{m_requests});
    QVERIFY(m_requests > LINES);
}

OZNA_CASE(Rehearsed, Rehearsed)
#include "tst_Rehearsed.moc"

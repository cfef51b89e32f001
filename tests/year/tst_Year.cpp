#include "BusyTimes.h"
#include "Device.h"
#include "Log.h"
#include "Requests.h"
#include "SchedulerAccess.h"
#include "SchedulerTest.h"
#include "Suite.h"

#include <QDir>
#include <QSet>

#include <algorithm>

#include <malloc.h>

using namespace Qt::StringLiterals;

namespace
{

constexpr int EARLY_INTERVAL_MS = Scheduler::EARLY_INTERVAL_MS;
constexpr int FAR_INTERVAL_MS = Scheduler::FAR_INTERVAL_MS;
constexpr int DAY_S = 86400;
constexpr qint64 WEEK_MS = 7LL * DAY_S * 1000;

// Around a start every pass runs, and at other times, when there is nothing to find, one far pass in so many.
constexpr qint64 AFTER_LOAD_MS = 30'000;
constexpr int QUIET_PASSES = 199;
constexpr qint64 LATER_MS = 5LL * 3600 * 1000;

constexpr qint64 GROWTH_BYTES = 16 * 1024;

const QString SCHEDULE = u"schedule.csv"_s;

struct Place
{
    const char* zone;
    int year;
};

// A year with a 29th of February, one without, and one past 2038; clocks are changed north and south, and by half an
// hour.
constexpr Place PLACES[] = {{"Europe/Rome", 2024}, {"America/Los_Angeles", 2027}, {"Australia/Lord_Howe", 2039}};

struct Use
{
    qint64 memory;
    qsizetype descriptors;
};

Use CurrentUse()
{
    const struct mallinfo2 memory = ::mallinfo2();
    return {static_cast<qint64>(memory.uordblks + memory.hblkhd),
            QDir(u"/proc/self/fd"_s).entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::System).size()};
}

} // namespace

// A year of a shop's schedule on a virtual clock, loaded anew every week and now and then in between.
class YearTest final : public SchedulerTest
{
    Q_OBJECT
private Q_SLOTS:
    void EveryRequestComesOnceAndInTime();

private:
    QList<qint64> Loads(int year, qint64 end_ms);
    void PassUntil(qint64 end_ms);
    void Tick();
    void Early(qint64 step_ms);
    void TakeRecords();

    std::optional<BusyTimes> m_busy;
    std::optional<Device> m_device;
    QSet<QString> m_warnings;
    QStringList m_missed;
    qint64 m_passes = 0;
};

void YearTest::Early(qint64 step_ms)
{
    Time().Advance_ms(step_ms);
    m_device->Play();
    CheckEarly();
}

void YearTest::Tick()
{
    for (int i = 1; i < FAR_INTERVAL_MS / EARLY_INTERVAL_MS; ++i)
        Early(EARLY_INTERVAL_MS);
    Time().Advance_ms(EARLY_INTERVAL_MS);
    m_device->Play();
    CheckFar();
    CheckEarly();
    ++m_passes;
}

// Every pass as the timers would have it. Of those that are far from everything most are left out.
void YearTest::PassUntil(qint64 end_ms)
{
    const qint64 begin_ms = Time().Utc_ms();
    for (int tick = 0; Time().Utc_ms() + FAR_INTERVAL_MS <= end_ms; ++tick)
    {
        if (tick % QUIET_PASSES == 0)
            m_busy->ReadOffset(Time().Utc_ms());
        if (tick % QUIET_PASSES == 0 || Time().Utc_ms() < begin_ms + AFTER_LOAD_MS || m_busy->Has(Time().Utc_ms()) ||
            SchedulerAccess::EarlyActions(Engine()).Size() > 0 ||
            m_device->Next_ms() <= Time().Utc_ms() + FAR_INTERVAL_MS)
            Tick();
        else
            Time().Advance_ms(FAR_INTERVAL_MS);
        TakeRecords();
    }
    while (Time().Utc_ms() + EARLY_INTERVAL_MS <= end_ms)
        Early(EARLY_INTERVAL_MS);
    Time().SetUtc_ms(end_ms);
}

void YearTest::TakeRecords()
{
    for (const LogRecord& record : LogRecorder::Records(LEVEL_WARNING))
    {
        const QString text = QString::fromUtf8(record.text.mid(record.text.indexOf(']') + 2));
        if (text.startsWith(QLatin1String("MISSED")))
            m_missed.append(text);
        else
            m_warnings.insert(text.section(u'(', 0, 0));
    }
    LogRecorder::Clear();
    Bus().Clear();
}

QList<qint64> YearTest::Loads(int year, qint64 end_ms)
{
    QList<qint64> loads_ms;
    const auto loadAt = [&](int month, int day, const QTime& time) {
        Time().SetLocal(QDate(year, month, day), time);
        loads_ms.append(Time().Utc_ms());
    };
    // Every week, at another time of the day each time.
    loadAt(1, 1, QTime(4, 7, 40));
    while (loads_ms.last() + WEEK_MS + LATER_MS < end_ms)
        loads_ms.append(loads_ms.last() + WEEK_MS + (loads_ms.size() % 5 == 0 ? -4 : 1) * LATER_MS);
    // Files that are updated while the playlist, the stream, a message and the radio play, and in the evening.
    loadAt(2, 13, QTime(10, 7, 42));
    loadAt(6, 18, QTime(10, 1, 17));
    loadAt(7, 8, QTime(13, 12));
    loadAt(9, 28, QTime(8, 30, 9));
    loadAt(10, 26, QTime(8, 30, 9));
    loadAt(11, 9, QTime(21, 0));
    std::ranges::sort(loads_ms);
    return loads_ms;
}

void YearTest::EveryRequestComesOnceAndInTime()
{
    const QString zone = qEnvironmentVariable("TZ");
    const auto* const place =
        std::ranges::find_if(PLACES, [&](const Place& known) { return zone == QLatin1String(known.zone); });
    QVERIFY(place != std::end(PLACES));
    const QDir source(QStringLiteral(OZNA_YEAR_DATA));
    m_busy.emplace(source.filePath(SCHEDULE));
    QVERIFY(QFile::copy(source.filePath(SCHEDULE), Data().SchedulePath(SCHEDULE)));
    for (const QString& playlist : {u"morning"_s, u"christmas"_s})
        QVERIFY(QFile::copy(source.filePath(playlist), Data().PlaylistPath(playlist)));

    const QString configuration = Data().Path() + u"/ozna.ini"_s;
    QVERIFY(QFile::copy(source.filePath(u"ozna.ini"_s), configuration));
    qputenv("OZNA_CONFIG_FILE", configuration.toLocal8Bit());

    Time().SetLocal(QDate(place->year, 12, 31), QTime(23, 59, 58));
    const qint64 end_ms = Time().Utc_ms();
    const QList<qint64> loads_ms = Loads(place->year, end_ms);
    ExpectedRequests expected(zone, source.path(), QDate(place->year, 1, 1).toString(Qt::ISODate),
                              QDate(place->year, 12, 31).toString(Qt::ISODate), loads_ms);

    Create();
    m_device.emplace(Bus(), [this] { return Time().Utc_ms(); });
    connect(&Engine(), &Scheduler::ExpectedPddAction, this, [this](uint action, bool enable) {
        m_device->m_requests.append(
            {Time().Utc_ms(), u"scheduler.ExpectedPddAction ub %1 %2"_s.arg(action).arg(QVariant(enable).toString())});
    });
    QList<Use> uses;
    for (qsizetype i = 0; i < loads_ms.size(); ++i)
    {
        Time().SetUtc_ms(loads_ms[i]);
        if (i == 0)
            Engine().Start();
        else
            QCOMPARE(Engine().Reload(), 0);
        PassUntil(i + 1 < loads_ms.size() ? loads_ms[i + 1] : end_ms);
        // The library posts what an event loop would do at once; the timers' events are no posted ones.
        QCoreApplication::sendPostedEvents();
        expected.Meet(std::exchange(m_device->m_requests, {}));
        uses.append(CurrentUse());
    }
    qInfo("%s %d: %lld requests, the latest %lld ms late; %lld far passes; %lld loads", place->zone, place->year,
          qlonglong{expected.Count()}, expected.Latest_ms(), m_passes, qlonglong{loads_ms.size()});
    const QByteArray difference = expected.Difference();
    QVERIFY2(difference.isEmpty(), difference.constData());
    QVERIFY(expected.Count() > 10000);
    const QSet<QString> warnings{
        u"Can't parse Cpu frequency from parameters: '456'. Using 456."_s,
        u"Task PlayPlaylist IsDelayed but still valid "_s,
    };
    QCOMPARE(m_warnings, warnings);
    // The night in which the clocks are put forward has not every time.
    const QString cause = u"the clocks were put forward (summer time or another time zone)"_s;
    QStringList missed{u"MISSED action: 5 (Volume), line 3, due at 02:15:00: "_s + cause,
                       u"MISSED action: 1 (PlayMessage), line 4, due at 02:20:30: "_s + cause};
    // Of Los Angeles' days, 15 January in UTC begins at 16:00:00 on the day before.
    if (zone == QLatin1String("America/Los_Angeles"))
        missed.prepend(QStringLiteral("MISSED action: 1 (PlayMessage), line 33, due at 16:00:00: its time comes too "
                                      "soon after midnight in UTC, when its spot date begins"));
    QCOMPARE(m_missed.join(u'\n'), missed.join(u'\n'));

    const Use& early = uses.first();
    const Use& late = uses.last();
    qInfo("memory in use: %lld bytes after the first week, %lld after the last; descriptors: %lld and %lld",
          early.memory, late.memory, qlonglong{early.descriptors}, qlonglong{late.descriptors});
    QVERIFY(late.memory - early.memory < GROWTH_BYTES);
    QCOMPARE(late.descriptors, early.descriptors);
    m_device.reset();
}

OZNA_CASE(Year, YearTest)
#include "tst_Year.moc"

#include "BusTest.h"
#include "Requests.h"
#include "Suite.h"

#include <QDir>
#include <QTimeZone>

#include <unistd.h>

using namespace Qt::StringLiterals;

// A month of mornings through the real process: the clock is put shortly before each, and on to it as soon as the
// daemon watches it. What the device has to receive is worked out by a program that shares nothing with the engine.
class Month : public BusTest
{
    Q_OBJECT
private Q_SLOTS:
    void EveryRequestComesOnceAndUseStaysTheSame();

private:
    struct Use
    {
        qint64 resident_bytes;
        qsizetype descriptors;
    };

    [[nodiscard]] Use DaemonUse() const;
    void Morning(const QDate& date, const ExpectedRequests& expected);
};

namespace
{

// East of Greenwich, so that a morning there belongs to the day before in UTC.
const QByteArray ZONE = "Pacific/Auckland";
const QDate FIRST(2024, 2, 1);
constexpr int DAYS = 30; // to the first of March, with a 29th of February
constexpr int RELOADED_EVERY = 7;
constexpr int SETTLED = 3; // days after which nothing new is called
constexpr int BEFORE_S = 10;
constexpr qint64 GROWTH_BYTES = 512 * 1024;

QDateTime LocalAt(const QDate& date, const QTime& time)
{
    static const QTimeZone zone(ZONE);
    return {date, time, zone};
}

const QTime DUE(8, 30);

} // namespace

Month::Use Month::DaemonUse() const
{
    const QString process = u"/proc/%1/"_s.arg(DaemonPid());
    QFile memory(process + u"statm"_s);
    const qint64 pages =
        memory.open(QIODevice::ReadOnly) ? memory.readAll().split(' ').value(1).toLongLong() : qint64{-1};
    const QDir descriptors(process + u"fd"_s);
    return {pages * ::sysconf(_SC_PAGESIZE),
            descriptors.entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::System).size()};
}

void Month::Morning(const QDate& date, const ExpectedRequests& expected)
{
    const QDateTime due = LocalAt(date, DUE);
    QStringList requests = expected.Between(due.addSecs(-60).toMSecsSinceEpoch(), due.addSecs(60).toMSecsSinceEpoch());
    const QStringList announced = requests.filter(u"scheduler."_s);
    for (const QString& text : announced)
        requests.removeOne(text);
    QVERIFY(!requests.isEmpty());

    Time().Set(due.addSecs(-BEFORE_S));
    QVERIFY(Daemon().WaitForLog(u"4 [Scheduler.cpp] EARLY action found: 5 (Volume)"_s));
    Time().Set(due.addSecs(1));
    QVERIFY(Device().WaitForCalls(requests.size()));
    QCOMPARE(Client().Call("IsEnabled"), u"0,true,schedule.csv"_s);
    // Which of them are asked for ahead depends on when the daemon has found them.
    QStringList found = Device().Calls();
    found.sort();
    requests.sort();
    COMPARE_LINES(found, requests);
    QCOMPARE(Client().WaitForSignals(1), QStringList{u"ExpectedPddAction(1,true)"_s});
    QCOMPARE(announced.size(), 1);

    Device().Emit("sound.PlayFileCompleted", {QString()});
    Device().Emit("sound.PlayPlaylistCompleted", {QString()});
    Device().Emit("sound.StreamEnabled", {false});
    QVERIFY(Daemon().WaitForLog(u"4 [tasks/PlayPlaylist.cpp] TASK COMPLETED | PlayPlaylist: morning"_s));
    static_cast<void>(Daemon().Take());
    Device().Forget();
}

void Month::EveryRequestComesOnceAndUseStaysTheSame()
{
    const QDir source(QStringLiteral(OZNA_MONTH_DATA));
    QVERIFY(QFile::copy(source.filePath(u"schedule.csv"_s), DataPath(u"schedule/schedule.csv"_s)));
    QVERIFY(QFile::copy(source.filePath(u"morning"_s), DataPath(u"playlists/morning"_s)));
    QVERIFY(QFile::remove(DataPath(u"ozna.ini"_s)));
    QVERIFY(QFile::copy(source.filePath(u"ozna.ini"_s), DataPath(u"ozna.ini"_s)));
    // Every schedule is loaded before the first start of its day: nothing is late, or in force already.
    const QDateTime begin = LocalAt(FIRST, QTime(6, 0));
    const ExpectedRequests expected(QString::fromLatin1(ZONE), source.path(), FIRST.toString(Qt::ISODate),
                                    FIRST.addDays(DAYS - 1).toString(Qt::ISODate), {begin.toMSecsSinceEpoch()});
    Daemon().Environment().insert(u"TZ"_s, QString::fromLatin1(ZONE));
    Time().Set(begin);
    QVERIFY(StartDaemon());

    QList<Use> uses;
    for (int day = 0; day < DAYS; ++day)
    {
        const QDate date = FIRST.addDays(day);
        if (day % RELOADED_EVERY == RELOADED_EVERY - 1)
        {
            Time().Set(LocalAt(date, QTime(6, 0)));
            QCOMPARE(Client().Call("Reload"), u"0"_s);
        }
        Morning(date, expected);
        if (QTest::currentTestFailed())
            return;
        uses.append(DaemonUse());
    }
    const Use& early = uses[SETTLED];
    const Use& late = uses.last();
    qInfo(
        "%lld requests in %d days; resident: %lld bytes after day %d, %lld after the last; descriptors: %lld and %lld",
        qlonglong{expected.Count()}, DAYS, early.resident_bytes, SETTLED + 1, late.resident_bytes,
        qlonglong{early.descriptors}, qlonglong{late.descriptors});
    QCOMPARE(late.descriptors, early.descriptors);
    // A sanitizer keeps what is freed.
    QVERIFY(IsSanitized() || late.resident_bytes - early.resident_bytes < GROWTH_BYTES);
}

OZNA_CASE(Month, Month)
#include "tst_Month.moc"

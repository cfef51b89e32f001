#include "BusTest.h"
#include "Lines.h"
#include "Suite.h"

#include <QRegularExpression>

#include <array>

using namespace Lines;
using namespace Qt::StringLiterals;

// On three days the player and the camera die before they have told the end. They come back at once, a minute later,
// and not at all. The lines of the schedule are asked for on every day all the same, once.
class PlayerDies : public BusTest
{
    Q_OBJECT

private Q_SLOTS:
    void TheLinesAreAskedForOnEveryDay_data();
    void TheLinesAreAskedForOnEveryDay();

private:
    // The clock stands still until every line is found.
    void FindAll(const QDate& day);
    void Perform(const QDate& day, const QString& moment);
    // A minute later who has died is there again, or not, and nothing more is asked for on that day.
    void GoOn(const QDate& day, bool isBackAtOnce, bool isBackLater);
    // Waits until the far timer has fired once more.
    [[nodiscard]] bool WaitForPass();
    [[nodiscard]] qsizetype Count(const QString& part) const { return m_lines.filter(part).size(); }

    void TakeLines() { m_lines += Daemon().Take(); }

    QStringList m_kinds;
    QStringList m_lines; // of the daemon, on that day
};

namespace
{

const QDate FIRST(2024, 1, 15);
const QTime TO_FIND(8, 29, 48); // early, but not yet ready
const QTime DUE(8, 30);
const QTime A_MINUTE_LATER(8, 31);

// When who has died comes back, day by day.
enum class Return
{
    AT_ONCE,
    AFTER_A_MINUTE,
    NEVER,
};
constexpr std::array RETURNS{Return::AT_ONCE, Return::AFTER_A_MINUTE, Return::NEVER, Return::NEVER};

const QString NO_OWNER = u"The name com.kestrelix.ozna.%1manager was not provided by any .service files"_s;
const QString GONE = u"Message recipient disconnected from message bus without replying"_s;

struct Kind
{
    QString name;
    QByteArray line;
    QString type; // in the scheduler's records
    QString method;
    QString accepted; // begin of the record
    QString failed;   // the record, up to the bus's message; of a series: none up to level 2
    QString peer;
    QString ended; // as the record of the end calls it
};

const QList<Kind>& Kinds()
{
    static const QList<Kind> kinds{
        {u"message"_s, "PlayMessage|gong.mp3", u"1 (PlayMessage)"_s, u"sound.PlayFile"_s,
         u"TASK START@TIME REQUESTED | PlayMessage"_s, u"1 [tasks/PlayMessage.cpp] PlayFile request error: "_s,
         u"sound"_s, u"PlayMessage: gong.mp3"_s},
        {u"playlist"_s, "PlayPlaylist|day,-1,morning", u"2 (PlayPlaylist)"_s, u"sound.PlayPlaylist"_s,
         u"TASK START@TIME REQUESTED | PlayPlaylist"_s, u"1 [tasks/PlayPlaylist.cpp] PlayPlaylist request error: "_s,
         u"sound"_s, u"PlayPlaylist: day"_s},
        {u"stream"_s, "PlayStream|8554/live", u"16 (PlayStream)"_s, u"sound.PlayStream"_s,
         u"TASK START REQUESTED | PlayStream"_s, u"1 [tasks/PlayStream.cpp] PlayStream request error: "_s, u"sound"_s,
         u"PlayStream: rtsp://10.0.0.5:8554/live"_s},
        {u"photo"_s, "RecordPhoto", u"4 (RecordPhoto)"_s, u"photo.TakePhoto"_s, u"TASK REQUESTED | Photo"_s,
         u"1 [tasks/Photo.cpp] TakePhoto() request error: "_s, u"photo"_s, u"RecordPhoto: interval=0 s, num=1"_s},
        {u"series"_s,
         "RecordPhoto|10,3",
         u"4 (RecordPhoto)"_s,
         u"photo.TakePhotoStream"_s,
         u"TASK REQUESTED | Photo: interval"_s,
         {},
         u"photo"_s,
         u"RecordPhoto: interval=10 s, num=3"_s},
    };
    return kinds;
}

QList<Kind> Chosen(const QStringList& names)
{
    QList<Kind> chosen = Kinds();
    chosen.removeIf([&](const Kind& kind) { return !names.contains(kind.name); });
    return chosen;
}

// What of the daemon's records tells of the fault of a day.
QStringList Told(const QStringList& names, const QString& moment)
{
    QStringList told;
    QStringList ended;
    for (const Kind& kind : Chosen(names))
    {
        const QString error = moment == "in"_L1 ? GONE : NO_OWNER.arg(kind.peer);
        if (!kind.failed.isEmpty() && (moment == "before"_L1 || moment == "in"_L1))
            told.append(kind.failed + error);
        // Photo work is under way also where the request failed.
        if (moment == "after"_L1 || (moment == "in"_L1 && kind.peer == "photo"_L1))
            ended.append(u"2 [Task.cpp] TASK ENDED WITH ITS PEER | "_s + kind.ended);
    }
    told += ended;
    told.sort();
    return told;
}

} // namespace

void PlayerDies::TheLinesAreAskedForOnEveryDay_data()
{
    QTest::addColumn<QStringList>("kinds");
    QTest::addColumn<QString>("moment");
    QStringList all;
    for (const Kind& kind : Kinds())
        all.append(kind.name);
    for (const char* moment : {"before", "after"})
        QTest::newRow(moment) << all << QString::fromLatin1(moment);
    // A process dies in one call.
    for (const QString& kind : std::as_const(all))
        QTest::addRow("in-%s", qPrintable(kind)) << QStringList{kind} << u"in"_s;
}

bool PlayerDies::WaitForPass()
{
    const auto passes = [this] {
        TakeLines();
        return Count(u"Checking far actions"_s);
    };
    const qsizetype before = passes();
    return WaitUntil([&] { return passes() > before; });
}

void PlayerDies::FindAll(const QDate& day)
{
    QVERIFY(WaitUntil([&] {
        Time().Set(QDateTime(day, TO_FIND, Qt::UTC));
        TakeLines();
        return Count(u"EARLY action found"_s) == m_kinds.size();
    }));
}

void PlayerDies::Perform(const QDate& day, const QString& moment)
{
    const QList<Kind> kinds = Chosen(m_kinds);
    if (moment == "before"_L1)
        StopDevice();
    else if (moment == "in"_L1)
        Device().AnswerByExit(kinds.first().method.toLatin1());
    Time().Set(QDateTime(day, DUE, Qt::UTC));
    for (const Kind& kind : kinds)
    {
        QVERIFY(WaitUntil([&] {
            TakeLines();
            return Count(moment == "after"_L1 ? kind.accepted : u"READY action found: "_s + kind.type) > 0;
        }));
    }
    // The record stands ahead of the call that ends the process.
    if (moment == "in"_L1)
        QVERIFY(WaitUntil([&] { return !Device().IsRunning(); }));
    if (moment == "after"_L1)
    {
        QCOMPARE(Device().Calls().size(), m_kinds.size());
        StopDevice();
    }
}

void PlayerDies::GoOn(const QDate& day, bool isBackAtOnce, bool isBackLater)
{
    if (isBackAtOnce)
        StartDevice();
    Time().Set(QDateTime(day, A_MINUTE_LATER, Qt::UTC));
    QVERIFY(WaitForPass());
    if (!isBackLater)
        return;
    StartDevice();
    // The playlist could still be joined: its end counts as told.
    QVERIFY(WaitForPass());
}

void PlayerDies::TheLinesAreAskedForOnEveryDay()
{
    QFETCH(QStringList, kinds);
    QFETCH(QString, moment);
    m_kinds = kinds;
    QByteArray schedule;
    for (const Kind& kind : Chosen(kinds))
        schedule += "1111111|08:30:00|*|*|*|||" + kind.line + '\n';
    WriteSchedule(schedule);
    WritePlaylist("first.mp3;600\nsecond.mp3;600\n", u"day"_s);
    WriteFile(DataPath(u"ozna.ini"_s), "[GENERAL]\nServerIp=10.0.0.5\n");
    Time().Set(QDateTime(FIRST, QTime(6, 0), Qt::UTC));
    QVERIFY(StartDaemon());
    QDate day = FIRST;
    bool isThere = true;
    for (const Return comesBack : RETURNS)
    {
        FindAll(day);
        if (QTest::currentTestFailed())
            return;
        const QString today = isThere ? moment : u"before"_s;
        Perform(day, today);
        GoOn(day, comesBack == Return::AT_ONCE, comesBack == Return::AFTER_A_MINUTE);
        if (QTest::currentTestFailed())
            return;
        // A process that dies loses its names in an order of the bus's own.
        QStringList told = m_lines.filter(QRegularExpression(u"^[12] "_s));
        told.sort();
        COMPARE_LINES(told, Told(kinds, today));
        QCOMPARE(Count(u"READY action found"_s), kinds.size());
        m_lines.clear();
        isThere = comesBack != Return::NEVER;
        day = day.addDays(1);
    }
}

OZNA_CASE(PlayerDies, PlayerDies)
#include "tst_PlayerDies.moc"

#include "PlayingTest.h"

#include "PlayKinds.h"

#include <csignal>

using namespace Lines;
using namespace Qt::StringLiterals;

namespace
{

const QString INTERRUPT = u"SIGINT"_s;

template <typename Lines> QStringList OfEach(Lines lines)
{
    QStringList all;
    for (const PlayKind& kind : PLAYBACKS)
        all += lines(kind);
    return all;
}

} // namespace

const QStringList PlayingTest::REQUESTS = OfEach([](const PlayKind& kind) { return kind.Start().Call(); });
const QStringList PlayingTest::STOPS = OfEach([](const PlayKind& kind) { return kind.Stop().Call(); });
const QStringList PlayingTest::STOPPED_ALL =
    OfEach([](const PlayKind& kind) { return Shown(kind.Stop().Records(Outcome::ACCEPTED), 4); });
const QStringList PlayingTest::STOPPED_NONE =
    OfEach([](const PlayKind& kind) { return Shown(kind.Stop().Records(Outcome::REFUSED), 4); });
const QStringList PlayingTest::GONE = OfEach([](const PlayKind& kind) { return kind.Start().EndedWithPeer(); });

bool PlayingTest::StartSchedule()
{
    WritePlaylist("# three tracks\nfirst.mp3;60\nsecond.mp3;30\nthird.mp3;45\n", u"day"_s);
    QByteArray schedule;
    for (const PlayKind& kind : PLAYBACKS)
        schedule += Due(kind.Start());
    WriteSchedule(schedule);
    Time().Set(MONDAY, {8, 29, 52});
    return StartDaemon();
}

bool PlayingTest::StartPlaying()
{
    if (!StartSchedule() || !RunDue(REQUESTS.size()) || !Device().WaitForCalls(REQUESTS.size()))
        return false;
    const bool answered = Client().Call("IsEnabled") == u"0,true,schedule.csv"_s && Daemon().Take(2).isEmpty();
    // Nothing of this is due any more, so that what is loaded again is not asked for again.
    Time().Set(MONDAY, {8, 40});
    return answered;
}

void PlayingTest::DeleteActions(const QString& by)
{
    if (by == WAYS[0])
        QCOMPARE(Client().Call("SetEnabled", {false}), u"0"_s);
    else if (by == WAYS[1])
        QCOMPARE(Client().Call("Reload"), u"0"_s);
    else if (by == WAYS[2])
        Device().Emit("update.FilesUpdated", {0, 2});
    else if (by == WAYS[3])
        QCOMPARE(Client().Call("SetScheduleFile", {u"none.csv"_s}), u"0"_s);
    else
    {
        Daemon().Signal(by == INTERRUPT ? SIGINT : SIGTERM);
        QCOMPARE(Daemon().WaitForExit(), 0);
    }
    QVERIFY(Daemon().WaitForLog(CLEANED.first()));
}

void PlayingTest::AddWays(bool withInterrupt)
{
    QTest::addColumn<QString>("by");
    for (const QString& by : WAYS)
        QTest::newRow(qPrintable(by)) << by;
    if (withInterrupt)
        QTest::newRow("SIGINT") << INTERRUPT;
}

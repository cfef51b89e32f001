#include "PlayingTest.h"

using namespace Lines;
using namespace Qt::StringLiterals;

bool PlayingTest::StartSchedule()
{
    WritePlaylist("# three tracks\nfirst.mp3;60\nsecond.mp3;30\nthird.mp3;45\n", u"day"_s);
    WriteFile(DataPath(u"ozna.ini"_s), "[GENERAL]\nServerIp=10.0.0.5\n");
    WriteSchedule("1111111|08:30:00|*|*|*|||PlayMessage|gong.mp3\n"
                  "1111111|08:30:00|*|*|*|||PlayPlaylist|day,-1,morning\n"
                  "1111111|08:30:00|*|*|*|||PlayStream|8554/live\n");
    Time().Set(QDateTime(QDate(2024, 1, 15), QTime(8, 29, 52), Qt::UTC));
    return StartDaemon();
}

bool PlayingTest::StartPlaying()
{
    if (!StartSchedule() || !Device().WaitForCalls(REQUESTS.size()))
        return false;
    const bool answered = Client().Call("IsEnabled") == u"0,true,schedule.csv"_s && Daemon().Take(2).isEmpty();
    // Nothing of this is due any more, so that what is loaded again is not asked for again.
    Time().Set(QDateTime(QDate(2024, 1, 15), QTime(8, 40), Qt::UTC));
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
        QCOMPARE(StopDaemon(), 0);
    QVERIFY(Daemon().WaitForLog(CLEANED.first()));
}

void PlayingTest::AddWays()
{
    QTest::addColumn<QString>("by");
    for (const QString& by : WAYS)
        QTest::newRow(qPrintable(by)) << by;
}

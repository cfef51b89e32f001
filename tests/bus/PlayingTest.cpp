#include "PlayingTest.h"

using namespace Lines;

bool PlayingTest::StartSchedule()
{
    WritePlaylist("# three tracks\nfirst.mp3;60\nsecond.mp3;30\nthird.mp3;45\n", QStringLiteral("day"));
    WriteFile(DataPath(QStringLiteral("ozna.ini")), "[GENERAL]\nServerIp=10.0.0.5\n");
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
    const bool answered =
        Client().Call("IsEnabled") == QStringLiteral("0,true,schedule.csv") && Daemon().Take(2).isEmpty();
    // Nothing of this is due any more, so that what is loaded again is not asked for again.
    Time().Set(QDateTime(QDate(2024, 1, 15), QTime(8, 40), Qt::UTC));
    return answered;
}

void PlayingTest::DeleteActions(const QString& by)
{
    if (by == WAYS[0])
        QCOMPARE(Client().Call("SetEnabled", {false}), QStringLiteral("0"));
    else if (by == WAYS[1])
        QCOMPARE(Client().Call("Reload"), QStringLiteral("0"));
    else if (by == WAYS[2])
        Device().Emit("update.FilesUpdated", {0, 2});
    else if (by == WAYS[3])
        QCOMPARE(Client().Call("SetScheduleFile", {QStringLiteral("none.csv")}), QStringLiteral("0"));
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

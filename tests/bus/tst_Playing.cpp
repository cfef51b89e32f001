#include "PlayingTest.h"
#include "Suite.h"

using namespace Lines;
using namespace Qt::StringLiterals;

// A message, a playlist and a stream play at once: how they end, by their completion or with their actions, and what of
// a schedule leaves nothing behind that would have to be stopped.
class Playing : public PlayingTest
{
    Q_OBJECT

private Q_SLOTS:
    void EndsWithTheSignalOfItsKind();
    void AStreamThatIsEnabledGoesOn();
    void IsStoppedOnceWithItsActions_data();
    void IsStoppedOnceWithItsActions();
    void IsStoppedInBoundedTimeWhenTheSchedulerEnds_data();
    void IsStoppedInBoundedTimeWhenTheSchedulerEnds();
    void WhatWasRefusedIsNotStopped();
    void WhatStillPlaysIsNotAskedForAgain();
};

namespace
{

QStringList Alternated(const QStringList& first, const QStringList& second)
{
    QStringList lines;
    for (qsizetype i = 0; i < first.size(); ++i)
        lines << first[i] << second[i];
    return lines;
}

const QStringList GONE{u"2 [Task.cpp] TASK ENDED WITH ITS PEER | PlayMessage: gong.mp3"_s,
                       u"2 [Task.cpp] TASK ENDED WITH ITS PEER | PlayPlaylist: day"_s,
                       u"2 [Task.cpp] TASK ENDED WITH ITS PEER | PlayStream: rtsp://10.0.0.5:8554/live"_s};

} // namespace

void Playing::EndsWithTheSignalOfItsKind()
{
    QVERIFY(StartPlaying());
    COMPARE_LINES(Device().Calls(), REQUESTS);
    Device().Emit("sound.PlayPlaylistCompleted", {u"another"_s});
    QVERIFY(Daemon().WaitForLog(u"4 [tasks/PlayPlaylist.cpp] TASK COMPLETED | PlayPlaylist: day"_s));
    Device().Emit("sound.StreamEnabled", {false});
    QVERIFY(Daemon().WaitForLog(u"4 [tasks/PlayStream.cpp] TASK COMPLETED | PlayStream: rtsp://10.0.0.5:8554/live"_s));
    Device().Emit("sound.PlayFileCompleted", {u"another.mp3"_s});
    QVERIFY(Daemon().WaitForLog(u"4 [tasks/PlayMessage.cpp] TASK COMPLETED | PlayMessage: another.mp3"_s));
    QCOMPARE(StopDaemon(), 0);
    COMPARE_LINES(Device().Calls(), REQUESTS);
}

void Playing::AStreamThatIsEnabledGoesOn()
{
    QVERIFY(StartPlaying());
    Device().Emit("sound.StreamEnabled", {true});
    // Signals come in order: once the next one shows, this one has been heard.
    Device().Emit("sound.PlayFileCompleted", {u"gong.mp3"_s});
    QVERIFY(Daemon().WaitForLog(u"4 [tasks/PlayMessage.cpp] TASK COMPLETED | PlayMessage: gong.mp3"_s));
    static_cast<void>(Daemon().Take());
    QCOMPARE(StopDaemon(), 0);
    COMPARE_LINES(Daemon().Take(4), Ended(RUNNING.mid(1)));
}

void Playing::IsStoppedOnceWithItsActions_data()
{
    AddWays();
}

void Playing::IsStoppedOnceWithItsActions()
{
    QFETCH(QString, by);
    QVERIFY(StartPlaying());
    Device().Forget();
    DeleteActions(by);
    COMPARE_LINES(Device().Calls(), STOPS);
    QStringList lines = Daemon().Take(4);
    lines.removeIf([](const QString& line) { return !line.contains(u"running: stop it"_s); });
    COMPARE_LINES(lines, RUNNING);
}

void Playing::IsStoppedInBoundedTimeWhenTheSchedulerEnds_data()
{
    QTest::addColumn<QString>("answer");
    QTest::addColumn<QStringList>("lines");
    QTest::addColumn<int>("atLeast_ms");
    QTest::addColumn<int>("atMost_ms");
    QTest::newRow("accepted") << u"accepted"_s << RUNNING << 0 << 10000;
    QTest::newRow("refused") << u"refused"_s << Alternated(RUNNING, NOT_STOPPED) << 0 << 10000;
    QTest::newRow("gone") << u"gone"_s << Alternated(RUNNING, NOT_STOPPED) << 0 << 10000;
    QTest::newRow("never answered") << u"never"_s << Alternated(RUNNING, NOT_STOPPED) << 2800 << 8000;
}

void Playing::IsStoppedInBoundedTimeWhenTheSchedulerEnds()
{
    QFETCH(QString, answer);
    QFETCH(QStringList, lines);
    QFETCH(int, atLeast_ms);
    QFETCH(int, atMost_ms);
    if (answer == u"refused"_s)
        Device().AnswerStatus("sound.StopPlay", 2);
    else if (answer == u"never"_s)
        Device().AnswerNever("sound.StopPlay");
    QVERIFY(StartPlaying());
    if (answer == u"gone"_s)
    {
        Device().SetPresent("sound", false);
        QVERIFY(Daemon().WaitForLog(GONE.last()));
        COMPARE_LINES(Daemon().Take(4), GONE);
    }
    const qint64 asked_ms = QDateTime::currentMSecsSinceEpoch();
    QCOMPARE(StopDaemon(), 0);
    const qint64 took_ms = QDateTime::currentMSecsSinceEpoch() - asked_ms;
    QVERIFY2(took_ms >= atLeast_ms && took_ms < atMost_ms, qPrintable(QString::number(took_ms)));
    COMPARE_LINES(Daemon().Take(4), Ended(lines));
    COMPARE_LINES(Device().Calls(), answer == u"gone"_s ? REQUESTS : REQUESTS + STOPS);
}

void Playing::WhatWasRefusedIsNotStopped()
{
    for (const char* method : {"sound.PlayFile", "sound.PlayPlaylist", "sound.PlayStream"})
        Device().AnswerStatus(method, 9);
    WritePlaylist("first.mp3;60\n", u"day"_s);
    WriteFile(DataPath(u"ozna.ini"_s), "[GENERAL]\nServerIp=10.0.0.5\n");
    WriteSchedule("1111111|08:30:00|*|*|*|||PlayStream|8554/live\n");
    Time().Set(QDateTime(QDate(2024, 1, 15), QTime(8, 29, 52), Qt::UTC));
    QVERIFY(StartDaemon());
    const QString refused = u"1 [tasks/PlayStream.cpp] PlayStream error: 9"_s;
    QVERIFY(Daemon().WaitForLog(refused));
    COMPARE_LINES(Daemon().Take(2), {refused});
    QCOMPARE(StopDaemon(), 0);
    COMPARE_LINES(Daemon().Take(4), Ended());
    COMPARE_LINES(Device().Calls(), {u"sound.PlayStream su rtsp://10.0.0.5:8554/live 0"_s});
}

// Three days, on each of which what has not told its end would be due.
void Playing::WhatStillPlaysIsNotAskedForAgain()
{
    const QString farPass = u"9 [Scheduler.cpp] Checking far actions"_s;
    QVERIFY(StartPlaying());
    for (int day = 16; day <= 18; ++day)
    {
        Time().Set(QDateTime(QDate(2024, 1, day), QTime(8, 29, 52), Qt::UTC));
        static_cast<void>(Daemon().Take());
        QVERIFY(Daemon().WaitForLog(farPass));
        Time().Set(QDateTime(QDate(2024, 1, day), QTime(8, 40), Qt::UTC));
        QVERIFY(Daemon().WaitForLog(StillRuns("16 (PlayStream)", 3)));
        COMPARE_LINES(Daemon().Take(4), (QStringList{StillRuns("1 (PlayMessage)", 1), StillRuns("2 (PlayPlaylist)", 2),
                                                     StillRuns("16 (PlayStream)", 3)}));
    }
    COMPARE_LINES(Device().Calls(), REQUESTS);
}

OZNA_CASE(Playing, Playing)
#include "tst_Playing.moc"

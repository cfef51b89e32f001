#include "PlayKinds.h"
#include "PlayingTest.h"
#include "Rows.h"
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
    void IsStoppedOnceWithItsActions_data() { AddWays(true); }
    void IsStoppedOnceWithItsActions();
    void IsStoppedInBoundedTimeWhenTheSchedulerEnds_data() { AddRows(Bounds()); }
    void IsStoppedInBoundedTimeWhenTheSchedulerEnds();
    void WhatWasRefusedIsNotStopped();
    void WhatStillPlaysIsNotAskedForAgain();

private:
    // How the peer answers when it is to stop what plays.
    struct Bound
    {
        const char* name;
        QStringList lines;
        int atLeast_ms;
        int atMost_ms;
    };
    static const QList<Bound>& Bounds();
};

const QList<Playing::Bound>& Playing::Bounds()
{
    static const QList<Bound> bounds{{"accepted", STOPPED_ALL, 0, 10000},
                                     {"refused", STOPPED_NONE, 0, 10000},
                                     {"gone", STOPPED_NONE, 0, 10000},
                                     {"never answered", STOPPED_NONE, 2800, 8000}};
    return bounds;
}

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
    static_cast<void>(Daemon().Take());
    // Nobody waits any more.
    Device().Emit("sound.PlayFileCompleted", {u"gong.mp3"_s});
    QCOMPARE(StopDaemon(), 0);
    COMPARE_LINES(Daemon().Take(4), Ended());
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
    COMPARE_LINES(Daemon().Take(4), Ended(STOPPED_ALL.mid(1)));
}

void Playing::IsStoppedOnceWithItsActions()
{
    QFETCH(QString, by);
    QVERIFY(StartPlaying());
    Device().Forget();
    DeleteActions(by);
    COMPARE_LINES(Device().Calls(), STOPS);
    COMPARE_LINES(Daemon().Take(4).filter(u"running: stop it"_s), STOPPED_ALL);
}

void Playing::IsStoppedInBoundedTimeWhenTheSchedulerEnds()
{
    const auto& [answer, lines, atLeast_ms, atMost_ms] = Row<Bound>();
    const bool isGone = qstrcmp(answer, "gone") == 0;
    if (qstrcmp(answer, "refused") == 0)
        Device().AnswerStatus("sound.StopPlay", 2);
    else if (qstrcmp(answer, "never answered") == 0)
        Device().AnswerNever("sound.StopPlay");
    QVERIFY(StartPlaying());
    if (isGone)
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
    COMPARE_LINES(Device().Calls(), isGone ? REQUESTS : REQUESTS + STOPS);
}

void Playing::WhatWasRefusedIsNotStopped()
{
    const Request stream = PLAYBACKS[2].Start();
    Device().AnswerStatus("sound.PlayStream", 9);
    WriteSchedule(Due(stream));
    Time().Set(MONDAY, {8, 29, 52});
    QVERIFY(StartDaemon());
    QVERIFY(RunDue(1));
    const QString refused = Shown(Answered(stream.Records(Outcome::REFUSED), {}, 9), 2).first();
    QVERIFY(Daemon().WaitForLog(refused));
    COMPARE_LINES(Daemon().Take(2), {refused});
    QCOMPARE(StopDaemon(), 0);
    COMPARE_LINES(Daemon().Take(4), Ended());
    COMPARE_LINES(Device().Calls(), {stream.Call()});
}

// Three days, on each of which what has not told its end would be due.
void Playing::WhatStillPlaysIsNotAskedForAgain()
{
    const QString farPass = u"9 [Scheduler.cpp] Checking far actions"_s;
    QVERIFY(StartPlaying());
    for (int day = 16; day <= 18; ++day)
    {
        Time().Set(QDate(2024, 1, day), {8, 29, 52});
        static_cast<void>(Daemon().Take());
        QVERIFY(Daemon().WaitForLog(farPass));
        Time().Set(QDate(2024, 1, day), {8, 40});
        QVERIFY(Daemon().WaitForLog(StillRuns("16 (PlayStream)", 3)));
        COMPARE_LINES(Daemon().Take(4), (QStringList{StillRuns("1 (PlayMessage)", 1), StillRuns("2 (PlayPlaylist)", 2),
                                                     StillRuns("16 (PlayStream)", 3)}));
    }
    COMPARE_LINES(Device().Calls(), REQUESTS);
}

OZNA_CASE(Playing, Playing)
#include "tst_Playing.moc"

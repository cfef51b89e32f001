#include "MessageTest.h"
#include "Suite.h"

#include <csignal>

using namespace Lines;
using namespace Qt::StringLiterals;

// How a message ends, by its completion or with its action.
class MessageEnd : public MessageTest
{
    Q_OBJECT

private Q_SLOTS:
    void ACompletionBeforeTheReplyIsAnothers();
    void ACompletionRightBehindTheReplyCompletes();
    void ACompletionOfAnotherFileCompletes();
    void AMessageThatIsStillRunningIsStopped_data();
    void AMessageThatIsStillRunningIsStopped();
    void AStopThatFailsIsLogged_data();
    void AStopThatFailsIsLogged();
    void AnEndIsBoundedWhenTheSoundManagerHangs();
};

void MessageEnd::ACompletionBeforeTheReplyIsAnothers()
{
    Device().AnswerStatus(PLAY_FILE, 0, 1000, 1);
    WriteSchedule(MessageLine("gong.mp3"));
    QVERIFY(StartDaemon());
    QVERIFY(Device().WaitForCalls(1));
    static_cast<void>(Daemon().Take());
    Device().Emit(PLAY_FILE_COMPLETED, {u"gong.mp3"_s});
    QVERIFY(Daemon().WaitForLog(Requested()));
    // The message goes on, and is stopped with its action.
    QCOMPARE(StopDaemon(), 0);
    COMPARE_LINES(Daemon().Take(4), Ended({RUNNING}));
    COMPARE_LINES(Device().Calls(), {PLAY, STOP});
}

void MessageEnd::ACompletionRightBehindTheReplyCompletes()
{
    const QString completed = u"4 [tasks/PlayMessage.cpp] TASK COMPLETED | PlayMessage: gong.mp3"_s;
    Device().AnswerThenEmit(PLAY_FILE, PLAY_FILE_COMPLETED, {u"gong.mp3"_s});
    WriteSchedule(MessageLine("gong.mp3"));
    QVERIFY(StartDaemon());
    QVERIFY(Daemon().WaitForLog(completed));
    static_cast<void>(Daemon().Take());
    // Before its second it would be asked for again.
    Time().Set(QDateTime(QDate(2024, 1, 15), QTime(8, 31), Qt::UTC));
    QCOMPARE(StopDaemon(), 0);
    COMPARE_LINES(Daemon().Take(4), Ended());
    COMPARE_LINES(Device().Calls(), {PLAY});
}

void MessageEnd::ACompletionOfAnotherFileCompletes()
{
    QVERIFY(StartAndWaitForRequest());
    static_cast<void>(Daemon().Take());
    Device().Emit(PLAY_FILE_COMPLETED, {u"other.mp3"_s});
    QVERIFY(Daemon().WaitForLog(u"4 [tasks/PlayMessage.cpp] TASK COMPLETED | PlayMessage: other.mp3"_s));
    // Nobody waits any more.
    Device().Emit(PLAY_FILE_COMPLETED, {u"gong.mp3"_s});
    QCOMPARE(StopDaemon(), 0);
    COMPARE_LINES(Daemon().Take(4),
                  QStringList{u"4 [tasks/PlayMessage.cpp] TASK COMPLETED | PlayMessage: other.mp3"_s} + Ended());
    COMPARE_LINES(Device().Calls(), {PLAY});
}

void MessageEnd::AMessageThatIsStillRunningIsStopped_data()
{
    QTest::addColumn<QString>("by");
    for (const char* by : {"SetEnabled", "Reload", "FilesUpdated", "SetScheduleFile", "SIGTERM", "SIGINT"})
        QTest::newRow(by) << QString::fromLatin1(by);
}

void MessageEnd::AMessageThatIsStillRunningIsStopped()
{
    QFETCH(QString, by);
    QVERIFY(StartAndWaitForRequest());
    Device().Forget();
    // Past its time, a message that is loaded again is not asked for again.
    Time().Set(QDateTime(QDate(2024, 1, 15), QTime(8, 31), Qt::UTC));
    if (by == u"SetEnabled"_s)
        QCOMPARE(Client().Call("SetEnabled", {false}), u"0"_s);
    else if (by == u"Reload"_s)
        QCOMPARE(Client().Call("Reload"), u"0"_s);
    else if (by == u"SetScheduleFile"_s)
        QCOMPARE(Client().Call("SetScheduleFile", {u"none.csv"_s}), u"0"_s);
    else if (by == u"FilesUpdated"_s)
        Device().Emit("update.FilesUpdated", {0, 2});
    else
    {
        Daemon().Signal(by == u"SIGINT"_s ? SIGINT : SIGTERM);
        QCOMPARE(Daemon().WaitForExit(), 0);
    }
    QVERIFY(Daemon().WaitForLog(RUNNING));
    QVERIFY(Device().WaitForCalls(1));
    COMPARE_LINES(Device().Calls(), {STOP});
}

void MessageEnd::AStopThatFailsIsLogged_data()
{
    QTest::addColumn<bool>("onTheBus");
    QTest::newRow("refused") << false;
    QTest::newRow("failed on the bus") << true;
}

void MessageEnd::AStopThatFailsIsLogged()
{
    QFETCH(bool, onTheBus);
    if (onTheBus)
        Device().AnswerError(STOP_PLAY, "nothing plays");
    else
        Device().AnswerStatus(STOP_PLAY, 2);
    QVERIFY(StartAndWaitForRequest());
    static_cast<void>(Daemon().Take());
    QCOMPARE(StopDaemon(), 0);
    COMPARE_LINES(Daemon().Take(4), Ended({RUNNING, NOT_STOPPED}));
    COMPARE_LINES(Device().Calls(), {PLAY, STOP});
}

void MessageEnd::AnEndIsBoundedWhenTheSoundManagerHangs()
{
    Device().AnswerNever(STOP_PLAY);
    QVERIFY(StartAndWaitForRequest());
    static_cast<void>(Daemon().Take());
    const qint64 asked_ms = QDateTime::currentMSecsSinceEpoch();
    QCOMPARE(StopDaemon(), 0);
    const qint64 waited_ms = QDateTime::currentMSecsSinceEpoch() - asked_ms;
    QVERIFY2(waited_ms >= 2800 && waited_ms < 15000, qPrintable(QString::number(waited_ms)));
    COMPARE_LINES(Daemon().Take(4), Ended({RUNNING, NOT_STOPPED}));
}

OZNA_CASE(MessageEnd, MessageEnd)
#include "tst_MessageEnd.moc"

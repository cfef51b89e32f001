#include "BusTest.h"
#include "Lines.h"

#include <csignal>

using namespace Lines;

// A message from its line to the sound manager and back, and what can happen on the way. The clock stands at 08:29:49
// when the daemon starts: the first far pass, three seconds later, finds what is due at 08:30:00 early.
class Message : public BusTest
{
    Q_OBJECT

private Q_SLOTS:
    void IsRequestedAheadOfItsTimeAndOnce();
    void OnlyAVolumeThatIsGivenIsSet_data();
    void OnlyAVolumeThatIsGivenIsSet();
    void WhateverTheVolumeRequestBringsTheMessageIsRequested_data();
    void WhateverTheVolumeRequestBringsTheMessageIsRequested();
    void ARefusalIsLogged_data();
    void ARefusalIsLogged();
    void AnAnswerOfAnotherTypeIsConverted_data();
    void AnAnswerOfAnotherTypeIsConverted();
    void AnAbsentSoundManagerIsLogged();
    void ASoundManagerThatNeverAnswersCostsItsTimeOut();
    void ASoundManagerThatExitsInTheCallIsLogged();
    void ACompletionBeforeTheReplyIsNotHeard();
    void ACompletionOfAnotherFileCompletes();
    void AMessageThatIsStillRunningIsStopped_data();
    void AMessageThatIsStillRunningIsStopped();
    void AStopThatFailsIsLogged_data();
    void AStopThatFailsIsLogged();
    void AnEndIsBoundedWhenTheSoundManagerHangs();
    void AStopMessageStopsAtItsSecond();
    void AStopMessageThatIsRefusedIsLogged();

private:
    [[nodiscard]] bool StartAndWaitForRequest(const char* parameters = "gong.mp3");
};

namespace
{

const QStringList EARLY{QStringLiteral("4 [Scheduler.cpp] EARLY action found: 1 (PlayMessage)")};
const QStringList READY_MESSAGE{QStringLiteral("4 [Scheduler.cpp] READY action found: 1 (PlayMessage)")};
const QString REQUESTED =
    QStringLiteral("9 [tasks/PlayMessage.cpp] TASK START@TIME REQUESTED | PlayMessage: gong.mp3|08:30:00|-1");
const QString COMPLETED = QStringLiteral("4 [tasks/PlayMessage.cpp] TASK COMPLETED | PlayMessage: gong.mp3");
const QString RUNNING = QStringLiteral("4 [tasks/PlayMessage.cpp] Scheduled Message gong.mp3 running: stop it");
const QString NOT_STOPPED = QStringLiteral("2 [tasks/PlayMessage.cpp] Impossible to stop scheduled file");
const QString PLAY = QStringLiteral("sound.PlayFile ss gong.mp3 08:30:00");
const QString STOP = QStringLiteral("sound.StopPlay ss file ");
constexpr const char* PLAY_FILE = "sound.PlayFile";
constexpr const char* STOP_PLAY = "sound.StopPlay";
constexpr const char* PLAY_FILE_COMPLETED = "sound.PlayFileCompleted";

QByteArray MessageLine(const char* parameters)
{
    return QByteArray("1111111|08:30:00|*|*|*|||PlayMessage|") + parameters + '\n';
}

} // namespace

// Returns once the request has been answered and its records are there.
bool Message::StartAndWaitForRequest(const char* parameters)
{
    WriteSchedule(MessageLine(parameters));
    if (!StartDaemon())
        return false;
    static_cast<void>(Daemon().Take());
    return Device().WaitForCalls(1)
           && WaitUntil([this] { return Client().Call("IsEnabled") == QStringLiteral("0,true,schedule.csv"); });
}

void Message::IsRequestedAheadOfItsTimeAndOnce()
{
    WriteSchedule(MessageLine("gong.mp3,70"));
    QVERIFY(StartDaemon());
    static_cast<void>(Daemon().Take());
    QVERIFY(Device().WaitForCalls(2));
    const QTime requested = Time().Now().time();
    QVERIFY2(requested >= QTime(8, 29, 52) && requested < QTime(8, 30), qPrintable(requested.toString()));
    COMPARE_LINES(Device().Calls(), {QStringLiteral("sound.SetPlayerVolume sd file 70"), PLAY});
    QVERIFY(Daemon().WaitForLog(QString(REQUESTED).replace(QStringLiteral("|-1"), QStringLiteral("|70"))));
    COMPARE_LINES(
        Daemon().Take().mid(6),
        QStringList{QStringLiteral("5 [Action.cpp] Task PlayMessage IsEarly: active in <12 seconds")} + EARLY
            + QStringList{QStringLiteral("5 [Action.cpp] Task PlayMessage IsReady (in time)")} + READY_MESSAGE
            + QStringList{QStringLiteral("5 [Action.cpp] Action 'PlayMessage' delay: 0 s (0=no-delay)"),
                          QStringLiteral("9 [Action.cpp] Task PlayMessage is starting !"),
                          QString(REQUESTED).replace(QStringLiteral("|-1"), QStringLiteral("|70"))});

    // Past its time and after its end, until the next far pass has looked at it, nothing more is sent.
    Device().Emit(PLAY_FILE_COMPLETED, {QStringLiteral("gong.mp3")});
    QVERIFY(Daemon().WaitForLog(COMPLETED));
    Time().Set(QDateTime(QDate(2024, 1, 15), QTime(8, 30, 3), Qt::UTC));
    static_cast<void>(Daemon().Take());
    QVERIFY(Daemon().WaitForLog(QStringLiteral("9 [Scheduler.cpp] > FarActions:     1")));
    COMPARE_LINES(Daemon().Take(5), QStringList());
    QCOMPARE(Device().Calls().size(), 2);
}

void Message::OnlyAVolumeThatIsGivenIsSet_data()
{
    QTest::addColumn<QByteArray>("parameters");
    QTest::addColumn<QStringList>("calls");
    QTest::addColumn<QStringList>("warnings");
    const QString volume = QStringLiteral("sound.SetPlayerVolume sd file ");
    QTest::newRow("none") << QByteArray("gong.mp3") << QStringList{PLAY} << QStringList();
    QTest::newRow("zero is set") << QByteArray("gong.mp3,0") << QStringList{volume + QLatin1Char('0'), PLAY}
                                 << QStringList();
    QTest::newRow("a negative one is not") << QByteArray("gong.mp3,-1") << QStringList{PLAY} << QStringList();
    QTest::newRow("a word is not")
        << QByteArray("gong.mp3,loud") << QStringList{PLAY}
        << QStringList{QStringLiteral("2 [tasks/PlayMessage.cpp] Invalid volume=loud, not used")};
    QTest::newRow("a large one is sent unchanged")
        << QByteArray("gong.mp3,1000000") << QStringList{volume + QStringLiteral("1e+06"), PLAY} << QStringList();
}

void Message::OnlyAVolumeThatIsGivenIsSet()
{
    QFETCH(QByteArray, parameters);
    QFETCH(QStringList, calls);
    QFETCH(QStringList, warnings);
    WriteSchedule(MessageLine(parameters.constData()));
    QVERIFY(StartDaemon());
    COMPARE_LINES(Daemon().Take(2), warnings);
    QVERIFY(Device().WaitForCalls(calls.size()));
    COMPARE_LINES(Device().Calls(), calls);
}

void Message::WhateverTheVolumeRequestBringsTheMessageIsRequested_data()
{
    QTest::addColumn<QString>("answer");
    QTest::newRow("refused") << QStringLiteral("status");
    QTest::newRow("failed on the bus") << QStringLiteral("error");
    QTest::newRow("never answered") << QStringLiteral("never");
}

void Message::WhateverTheVolumeRequestBringsTheMessageIsRequested()
{
    QFETCH(QString, answer);
    if (answer == QStringLiteral("status"))
        Device().AnswerStatus("sound.SetPlayerVolume", 4);
    else if (answer == QStringLiteral("error"))
        Device().AnswerError("sound.SetPlayerVolume", "no such volume");
    else
        Device().AnswerNever("sound.SetPlayerVolume");
    WriteSchedule(MessageLine("gong.mp3,70"));
    QVERIFY(StartDaemon());
    QVERIFY(Device().WaitForCalls(2));
    QCOMPARE(Device().Calls().last(), PLAY);
    QVERIFY(Daemon().WaitForLog(QString(REQUESTED).replace(QStringLiteral("|-1"), QStringLiteral("|70"))));
}

void Message::ARefusalIsLogged_data()
{
    QTest::addColumn<int>("status");
    QTest::newRow("positive") << 3;
    QTest::newRow("negative") << -1;
    QTest::newRow("smallest") << std::numeric_limits<int>::min();
}

void Message::ARefusalIsLogged()
{
    QFETCH(int, status);
    Device().AnswerStatus(PLAY_FILE, status, 0, 1);
    QVERIFY(StartAndWaitForRequest());
    COMPARE_LINES(Daemon().Take(4),
                  EARLY + READY_MESSAGE
                      + QStringList{QStringLiteral("1 [tasks/PlayMessage.cpp] PlayFile error: %1").arg(status)});
    // Nothing runs: a stop is not sent.
    QCOMPARE(StopDaemon(), 0);
    COMPARE_LINES(Device().Calls(), {PLAY});
    COMPARE_LINES(Daemon().Take(4), Ended());
}

void Message::AnAnswerOfAnotherTypeIsConverted_data()
{
    QTest::addColumn<QVariantList>("values");
    QTest::addColumn<QString>("record");
    const auto error = [](const char* status) {
        return QStringLiteral("1 [tasks/PlayMessage.cpp] PlayFile error: %1").arg(QLatin1String(status));
    };
    QTest::newRow("no value") << QVariantList() << REQUESTED;
    QTest::newRow("a text that is no number") << QVariantList{QStringLiteral("ok")} << REQUESTED;
    QTest::newRow("a text that is a number") << QVariantList{QStringLiteral("7")} << error("7");
    QTest::newRow("an unsigned number") << QVariantList{7U} << error("7");
    QTest::newRow("true") << QVariantList{true} << error("1");
    QTest::newRow("false") << QVariantList{false} << REQUESTED;
    QTest::newRow("a list of texts") << QVariantList{QStringList{QStringLiteral("7")}} << REQUESTED;
    QTest::newRow("a map") << QVariantList{QVariantMap{{QStringLiteral("status"), 7}}} << REQUESTED;
    QTest::newRow("a status with more values") << QVariantList{7, QStringLiteral("more"), 1.5} << error("7");
    QTest::newRow("0 with more values") << QVariantList{0, 7} << REQUESTED;
    QTest::newRow("a number that no int holds") << QVariantList{1e300} << REQUESTED;
}

void Message::AnAnswerOfAnotherTypeIsConverted()
{
    QFETCH(QVariantList, values);
    QFETCH(QString, record);
    Device().AnswerValues(PLAY_FILE, values, 0, 1);
    QVERIFY(StartAndWaitForRequest());
    const QStringList records = Daemon().Take();
    QCOMPARE(records.last(), record);
}

void Message::AnAbsentSoundManagerIsLogged()
{
    Device().SetPresent("sound", false);
    WriteSchedule(MessageLine("gong.mp3,70"));
    QVERIFY(StartDaemon());
    static_cast<void>(Daemon().Take());
    const QString error = QStringLiteral("1 [tasks/PlayMessage.cpp] PlayFile request error: The name "
                                         "com.kestrelix.ozna.soundmanager was not provided by any .service files");
    QVERIFY(Daemon().WaitForLog(error));
    COMPARE_LINES(Daemon().Take(4), EARLY + READY_MESSAGE + QStringList{error});
    QCOMPARE(Client().Call("IsEnabled"), QStringLiteral("0,true,schedule.csv"));
}

void Message::ASoundManagerThatNeverAnswersCostsItsTimeOut()
{
    Device().AnswerNever(PLAY_FILE, 1);
    WriteSchedule(MessageLine("gong.mp3"));
    QVERIFY(StartDaemon());
    QVERIFY(Device().WaitForCalls(1));
    const qint64 asked_ms = Device().CallTimes().first();
    static_cast<void>(Daemon().Take());
    const QString error = QStringLiteral("1 [tasks/PlayMessage.cpp] PlayFile request error: Did not receive a reply. "
                                         "Possible causes include: the remote application did not send a reply, the "
                                         "message bus security policy blocked the reply, the reply timeout expired, or "
                                         "the network connection was broken.");
    QVERIFY(Daemon().WaitForLog(error));
    const qint64 waited_ms = QDateTime::currentMSecsSinceEpoch() - asked_ms;
    QVERIFY2(waited_ms >= 2900 && waited_ms < 4500, qPrintable(QString::number(waited_ms)));
    COMPARE_LINES(Daemon().Take(2), {error});
}

void Message::ASoundManagerThatExitsInTheCallIsLogged()
{
    Device().AnswerByExit(PLAY_FILE);
    WriteSchedule(MessageLine("gong.mp3"));
    QVERIFY(StartDaemon());
    static_cast<void>(Daemon().Take());
    QVERIFY(WaitUntil([this] { return !Daemon().Log(2).isEmpty(); }));
    const QStringList errors = Daemon().Take(2);
    QCOMPARE(errors.size(), 1);
    QVERIFY2(errors[0].startsWith(QStringLiteral("1 [tasks/PlayMessage.cpp] PlayFile request error: ")),
             qPrintable(errors[0]));
    QCOMPARE(Client().Call("IsEnabled"), QStringLiteral("0,true,schedule.csv"));
}

void Message::ACompletionBeforeTheReplyIsNotHeard()
{
    Device().AnswerStatus(PLAY_FILE, 0, 1000, 1);
    WriteSchedule(MessageLine("gong.mp3"));
    QVERIFY(StartDaemon());
    QVERIFY(Device().WaitForCalls(1));
    static_cast<void>(Daemon().Take());
    Device().Emit(PLAY_FILE_COMPLETED, {QStringLiteral("gong.mp3")});
    QVERIFY(Daemon().WaitForLog(REQUESTED));
    // The task waits for a completion that came too early: it is stopped with its action.
    QCOMPARE(StopDaemon(), 0);
    COMPARE_LINES(Daemon().Take(4), Ended({RUNNING}));
    COMPARE_LINES(Device().Calls(), {PLAY, STOP});
}

void Message::ACompletionOfAnotherFileCompletes()
{
    QVERIFY(StartAndWaitForRequest());
    static_cast<void>(Daemon().Take());
    Device().Emit(PLAY_FILE_COMPLETED, {QStringLiteral("other.mp3")});
    QVERIFY(Daemon().WaitForLog(QStringLiteral("4 [tasks/PlayMessage.cpp] TASK COMPLETED | PlayMessage: other.mp3")));
    // Nobody waits any more.
    Device().Emit(PLAY_FILE_COMPLETED, {QStringLiteral("gong.mp3")});
    QCOMPARE(StopDaemon(), 0);
    COMPARE_LINES(Daemon().Take(4),
                  QStringList{QStringLiteral("4 [tasks/PlayMessage.cpp] TASK COMPLETED | PlayMessage: other.mp3")}
                      + Ended());
    COMPARE_LINES(Device().Calls(), {PLAY});
}

void Message::AMessageThatIsStillRunningIsStopped_data()
{
    QTest::addColumn<QString>("by");
    for (const char* by : {"SetEnabled", "Reload", "FilesUpdated", "SetScheduleFile", "SIGTERM", "SIGINT"})
        QTest::newRow(by) << QString::fromLatin1(by);
}

void Message::AMessageThatIsStillRunningIsStopped()
{
    QFETCH(QString, by);
    QVERIFY(StartAndWaitForRequest());
    Device().Forget();
    // Past its time, a message that is loaded again is not asked for again.
    Time().Set(QDateTime(QDate(2024, 1, 15), QTime(8, 31), Qt::UTC));
    if (by == QStringLiteral("SetEnabled"))
        QCOMPARE(Client().Call("SetEnabled", {false}), QStringLiteral("0"));
    else if (by == QStringLiteral("Reload"))
        QCOMPARE(Client().Call("Reload"), QStringLiteral("0"));
    else if (by == QStringLiteral("SetScheduleFile"))
        QCOMPARE(Client().Call("SetScheduleFile", {QStringLiteral("none.csv")}), QStringLiteral("0"));
    else if (by == QStringLiteral("FilesUpdated"))
        Device().Emit("update.FilesUpdated", {0, 2});
    else
    {
        Daemon().Signal(by == QStringLiteral("SIGINT") ? SIGINT : SIGTERM);
        QCOMPARE(Daemon().WaitForExit(), 0);
    }
    QVERIFY(Daemon().WaitForLog(RUNNING));
    QVERIFY(Device().WaitForCalls(1));
    COMPARE_LINES(Device().Calls(), {STOP});
}

void Message::AStopThatFailsIsLogged_data()
{
    QTest::addColumn<bool>("onTheBus");
    QTest::newRow("refused") << false;
    QTest::newRow("failed on the bus") << true;
}

void Message::AStopThatFailsIsLogged()
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

void Message::AnEndIsBoundedWhenTheSoundManagerHangs()
{
    Device().AnswerNever(STOP_PLAY);
    QVERIFY(StartAndWaitForRequest());
    static_cast<void>(Daemon().Take());
    const qint64 asked_ms = QDateTime::currentMSecsSinceEpoch();
    QCOMPARE(StopDaemon(), 0);
    const qint64 waited_ms = QDateTime::currentMSecsSinceEpoch() - asked_ms;
    QVERIFY2(waited_ms >= 2900 && waited_ms < 5000, qPrintable(QString::number(waited_ms)));
    COMPARE_LINES(Daemon().Take(4), Ended({RUNNING, NOT_STOPPED}));
}

void Message::AStopMessageStopsAtItsSecond()
{
    Time().Set(QDateTime(QDate(2024, 1, 15), QTime(8, 29, 56), Qt::UTC));
    WriteSchedule("1111111|08:30:00|*|*|*|||StopMessage\n");
    QVERIFY(StartDaemon());
    static_cast<void>(Daemon().Take());
    const QString requested = QStringLiteral("9 [tasks/StopMessage.cpp] TASK REQUESTED | StopPlay(file)");
    QVERIFY(Daemon().WaitForLog(requested));
    const QTime now = Time().Now().time();
    QVERIFY2(now >= QTime(8, 30) && now < QTime(8, 30, 1), qPrintable(now.toString(Qt::ISODateWithMs)));
    COMPARE_LINES(Device().Calls(), {STOP});
    QStringList lines = Daemon().Take();
    lines.removeIf([](const QString& line) {
        return line.contains(QStringLiteral("Actions:  ")) || line.contains(QStringLiteral("-----"))
               || line.contains(QStringLiteral("Checking")) || line.contains(QStringLiteral("TOTAL"));
    });
    COMPARE_LINES(lines, {QStringLiteral("5 [Action.cpp] Task StopMessage IsEarly: active in <12 seconds"),
                          QStringLiteral("4 [Scheduler.cpp] EARLY action found: 14 (StopMessage)"),
                          QStringLiteral("5 [Action.cpp] Task StopMessage IsReady (in time)"),
                          QStringLiteral("4 [Scheduler.cpp] READY action found: 14 (StopMessage)"),
                          QStringLiteral("5 [Action.cpp] Action 'StopMessage' delay: 0 s (0=no-delay)"),
                          QStringLiteral("9 [Action.cpp] Task StopMessage is starting !"), requested});
}

void Message::AStopMessageThatIsRefusedIsLogged()
{
    Time().Set(QDateTime(QDate(2024, 1, 15), QTime(8, 29, 56), Qt::UTC));
    Device().AnswerStatus(STOP_PLAY, 5);
    WriteSchedule("1111111|08:30:00|*|*|*|||StopMessage\n");
    QVERIFY(StartDaemon());
    const QString error = QStringLiteral("1 [tasks/StopMessage.cpp] StopPlay(file) error: 5");
    QVERIFY(Daemon().WaitForLog(error));
    COMPARE_LINES(Daemon().Take(2), {error});
}

QTEST_GUILESS_MAIN(Message)
#include "tst_Message.moc"

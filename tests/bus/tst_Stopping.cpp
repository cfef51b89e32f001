#include "BusTest.h"
#include "Lines.h"
#include "RequestTable.h"
#include "Suite.h"

#include <QDBusPendingCall>
#include <QElapsedTimer>
#include <QRegularExpression>

#include <csignal>

using namespace Lines;

// SIGTERM at the moments when the daemon has much to do: it begins nothing more, and is gone as soon as the one call
// that it waits for has ended.
class Stopping : public BusTest
{
    Q_OBJECT

private Q_SLOTS:
    void NoActionIsStartedAfterASignal();
    void NoSecondCallIsMadeAfterASignal_data();
    void NoSecondCallIsMadeAfterASignal();
    void PhotosThatWaitAskForNoFurtherStop();
    void APeerThatNeverAnswersCostsOneTimeOutAtTheEnd();
    void APeerThatAnswersWithAnErrorIsWaitedForAtTheEnd();
    void AFileIsNotReadToItsEnd();
    void ReloadsThatWaitAreLeft();

private:
    void StartAndRun(const QByteArray& schedule);
    [[nodiscard]] QStringList TakeSinceEarly(unsigned int maxLevel);
    [[nodiscard]] qint64 TimeToEnd_ms();
};

namespace
{

constexpr qint64 GRACE_MS = 1000;
constexpr int SLOW_MS = 800;
const QByteArray AT_ONE_SECOND = "1111111|08:30:00|*|*|*|||";

const QString EARLY = QStringLiteral("4 .Scheduler.cpp. EARLY action found");

QString Ready(const char* task)
{
    return QStringLiteral("4 [Scheduler.cpp] READY action found: %1").arg(QLatin1String(task));
}

} // namespace

// Starts the daemon on the schedule and puts its clock to the half hour, once it has found what is due then.
void Stopping::StartAndRun(const QByteArray& schedule)
{
    WriteSchedule(schedule);
    QVERIFY(StartDaemon());
    const auto due = schedule.count('\n');
    QVERIFY(WaitUntil([&] { return Daemon().Log().filter(QRegularExpression(EARLY)).size() == due; }));
    Time().Set(QDateTime(QDate(2024, 1, 15), QTime(8, 30), Qt::UTC));
}

// What was logged after the last action was found early.
QStringList Stopping::TakeSinceEarly(unsigned int maxLevel)
{
    const QStringList lines = Daemon().Take(maxLevel);
    return lines.mid(lines.lastIndexOf(QRegularExpression(EARLY + QStringLiteral(".*"))) + 1);
}

// From a SIGTERM on; a very long time when it ends otherwise than with 0.
qint64 Stopping::TimeToEnd_ms()
{
    QElapsedTimer timer;
    timer.start();
    return StopDaemon() == 0 ? timer.elapsed() : WAIT_MS;
}

void Stopping::NoActionIsStartedAfterASignal()
{
    // Messages are asked for up to eight seconds ahead: the others are ready still when the first has timed out.
    Device().AnswerNever("sound.PlayFile");
    WriteSchedule((AT_ONE_SECOND + "PlayMessage|gong.mp3\n").repeated(3));
    QVERIFY(StartDaemon());
    QVERIFY(Device().WaitForCalls(1));
    const qint64 end_ms = TimeToEnd_ms();
    QVERIFY2(end_ms < SOUND_TIMEOUT_MS + GRACE_MS, qPrintable(QString::number(end_ms)));
    COMPARE_LINES(Device().Calls(), {QStringLiteral("sound.PlayFile ss gong.mp3 08:30:00")});
    QStringList lines = Daemon().Take(4);
    lines = lines.mid(lines.indexOf(Ready("1 (PlayMessage)")));
    // A far pass may come between the time-out and the end, and finds the messages once more.
    lines.removeIf([](const QString& line) { return line.contains(QRegularExpression(EARLY)); });
    QVERIFY(lines.value(1).startsWith(QStringLiteral("1 [tasks/PlayMessage.cpp] PlayFile request error: Did not")));
    lines.removeAt(1);
    COMPARE_LINES(lines, QStringList{Ready("1 (PlayMessage)")} + Ended());
}

void Stopping::NoSecondCallIsMadeAfterASignal_data()
{
    QTest::addColumn<QByteArray>("task");
    QTest::addColumn<QByteArray>("method");
    QTest::addColumn<QString>("call");
    QTest::addColumn<QStringList>("lines"); // after READY
    const QString reason = QStringLiteral("The scheduler is stopping");
    QTest::newRow("message") << QByteArray("PlayMessage|gong.mp3,70") << QByteArray("sound.SetPlayerVolume")
                             << QStringLiteral("sound.SetPlayerVolume sd file 70")
                             << QStringList{Ready("1 (PlayMessage)"),
                                            QStringLiteral("1 [tasks/PlayMessage.cpp] PlayFile request error: ") +
                                                reason};
    QTest::newRow("playlist") << QByteArray("PlayPlaylist|day,70,id") << QByteArray("sound.SetPlayerVolume")
                              << QStringLiteral("sound.SetPlayerVolume sd playlist 70")
                              << QStringList{Ready("2 (PlayPlaylist)"),
                                             QStringLiteral("4 [tasks/PlayPlaylist.cpp] Requesting PlayPlaylist..."),
                                             QStringLiteral("1 [tasks/PlayPlaylist.cpp] PlayPlaylist request error: ") +
                                                 reason};
    QTest::newRow("stream") << QByteArray("PlayStream|/one,70") << QByteArray("sound.SetPlayerVolume")
                            << QStringLiteral("sound.SetPlayerVolume sd stream 70")
                            << QStringList{Ready("16 (PlayStream)"),
                                           QStringLiteral("1 [tasks/PlayStream.cpp] PlayStream request error: ") +
                                               reason};
    QTest::newRow("light") << QByteArray("Light|5") << QByteArray("light.SetIntensity")
                           << QStringLiteral("light.SetIntensity u 5")
                           << QStringList{Ready("0 (Light)"),
                                          QStringLiteral("1 [tasks/Light.cpp] Switch(1) request error")};
    QTest::newRow("radio") << QByteArray("PlayRadioFm|98.5") << QByteArray("sound.PlayRadioFm")
                           << QStringLiteral("sound.PlayRadioFm -") << QStringList{Ready("6 (PlayRadioFm)")};
}

void Stopping::NoSecondCallIsMadeAfterASignal()
{
    QFETCH(QByteArray, task);
    QFETCH(QByteArray, method);
    QFETCH(QString, call);
    QFETCH(QStringList, lines);
    WritePlaylist("song.mp3;600\n", QStringLiteral("day"));
    WriteFile(DataPath(QStringLiteral("ozna.ini")), "[GENERAL]\nServerIp=10.0.0.5\n");
    Device().AnswerStatus(method.constData(), 0, SLOW_MS);
    StartAndRun(AT_ONE_SECOND + task + '\n');
    QVERIFY(Device().WaitForCalls(1));
    const qint64 end_ms = TimeToEnd_ms();
    QVERIFY2(end_ms < SLOW_MS + GRACE_MS, qPrintable(QString::number(end_ms)));
    COMPARE_LINES(Device().Calls(), {call});
    // Nothing is said to have been asked for that was not.
    const QStringList all = TakeSinceEarly(9);
    QVERIFY(all.filter(QStringLiteral("SetFrequency: ")).isEmpty());
    QStringList found;
    for (const QString& line : all)
    {
        if (line.at(0) <= QLatin1Char('4'))
            found.append(line);
    }
    COMPARE_LINES(found, lines + Ended());
}

void Stopping::PhotosThatWaitAskForNoFurtherStop()
{
    constexpr int PHOTOS = 50;
    Device().AnswerStatus("photo.StopPhotoStream", 1, SLOW_MS);
    StartAndRun(AT_ONE_SECOND + "RecordPhoto|1,1000\n" + AT_ONE_SECOND + "RecordPhoto|1,2\n");
    QVERIFY(Device().WaitForCalls(2));
    Device().Emit("photo.PhotoTaken", {0, QStringLiteral("/p.jpg")}, PHOTOS);
    QVERIFY(Device().WaitForCalls(3));
    const qint64 end_ms = TimeToEnd_ms();
    QVERIFY2(end_ms < SLOW_MS + GRACE_MS, qPrintable(QString::number(end_ms)));
    QCOMPARE(Device().Calls().size(), 3);
    static_cast<void>(Daemon().Take());
}

void Stopping::APeerThatNeverAnswersCostsOneTimeOutAtTheEnd()
{
    constexpr int MESSAGES = 4;
    StartAndRun((AT_ONE_SECOND + "PlayMessage|gong.mp3\n").repeated(MESSAGES));
    QVERIFY(Device().WaitForCalls(MESSAGES));
    // Heard when the last message has been answered.
    QCOMPARE(Client().Call("IsEnabled"), QStringLiteral("0,true,schedule.csv"));
    static_cast<void>(Daemon().Take());
    Device().Forget();
    Device().AnswerNever("sound.StopPlay");
    const qint64 end_ms = TimeToEnd_ms();
    QVERIFY2(end_ms > SOUND_TIMEOUT_MS / 2 && end_ms < SOUND_TIMEOUT_MS + GRACE_MS,
             qPrintable(QString::number(end_ms)));
    COMPARE_LINES(Device().Calls(), QStringList(MESSAGES, QStringLiteral("sound.StopPlay ss file ")));
    QStringList stops;
    for (int i = 0; i < MESSAGES; ++i)
        stops += {QStringLiteral("4 [tasks/PlayMessage.cpp] Scheduled Message gong.mp3 running: stop it"),
                  QStringLiteral("2 [tasks/PlayMessage.cpp] Impossible to stop scheduled file")};
    COMPARE_LINES(Daemon().Take(4), Ended(stops));
}

void Stopping::APeerThatAnswersWithAnErrorIsWaitedForAtTheEnd()
{
    constexpr int MESSAGES = 3;
    StartAndRun((AT_ONE_SECOND + "PlayMessage|gong.mp3\n").repeated(MESSAGES));
    QVERIFY(Device().WaitForCalls(MESSAGES));
    QCOMPARE(Client().Call("IsEnabled"), QStringLiteral("0,true,schedule.csv"));
    static_cast<void>(Daemon().Take());
    Device().AnswerError("sound.StopPlay", "out of order", 1);
    QVERIFY(TimeToEnd_ms() < SOUND_TIMEOUT_MS);
    // The others are stopped.
    QStringList stops(MESSAGES,
                      QStringLiteral("4 [tasks/PlayMessage.cpp] Scheduled Message gong.mp3 running: stop it"));
    stops.insert(1, QStringLiteral("2 [tasks/PlayMessage.cpp] Impossible to stop scheduled file"));
    COMPARE_LINES(Daemon().Take(4), Ended(stops));
}

void Stopping::AFileIsNotReadToItsEnd()
{
    WriteSchedule((AT_ONE_SECOND + "StopMessage\n").repeated(20000));
    UseDaemon(QStringLiteral("tests/ozna-scheduler-faulty"));
    Daemon().Environment().insert(QStringLiteral("OZNA_FAULT"), QStringLiteral("halt"));
    Daemon().Environment().insert(QStringLiteral("OZNA_LOG_LEVEL"), QStringLiteral("4"));
    Daemon().Start();
    QVERIFY(Daemon().WaitUntilHalted());
    // The first load: the event loop does not run yet.
    Daemon().Signal(SIGTERM);
    Daemon().Signal(SIGCONT);
    QCOMPARE(Daemon().WaitForExit(), 0);
    QStringList lines = Daemon().Take();
    QCOMPARE(lines.removeAll(QStringLiteral("4 [tasks/StopMessage.cpp] TASK CREATED | StopMessage")), 5000);
    COMPARE_LINES(lines, CREATED + READY + Loading(DataPath(QStringLiteral("schedule/schedule.csv"))) + Ended());
}

void Stopping::ReloadsThatWaitAreLeft()
{
    constexpr int RELOADS = 3000;
    constexpr int LINES = 1000;
    constexpr int LOADS_BEFORE = 20;
    constexpr qint64 LONGEST_MS = 3000;
    WriteSchedule((AT_ONE_SECOND + "StopMessage\n").repeated(LINES));
    Daemon().Environment().insert(QStringLiteral("OZNA_LOG_LEVEL"), QStringLiteral("4"));
    QVERIFY(StartDaemon());
    static_cast<void>(Daemon().Take());
    const QDBusMessage call = QDBusMessage::createMethodCall(SchedulerClient::SERVICE, SchedulerClient::PATH,
                                                             SchedulerClient::INTERFACE, QStringLiteral("Reload"));
    QList<QDBusPendingCall> calls;
    for (int i = 0; i < RELOADS; ++i)
        calls.append(Bus().Connection().asyncCall(call));
    // By then the others wait in the daemon.
    QVERIFY(WaitUntil([&] { return Daemon().Log().count(RESTARTING.first()) >= LOADS_BEFORE; }));
    const qint64 end_ms = TimeToEnd_ms();
    const qsizetype loads = Daemon().Take().count(RESTARTING.first());
    qInfo("%d reloads of %d lines: ended after %lld ms and %lld loads", RELOADS, LINES, end_ms,
          static_cast<qint64>(loads));
    QVERIFY(end_ms < LONGEST_MS);
    QVERIFY(loads < RELOADS);
    // Who has been heard is told that all is well.
    for (const QDBusPendingCall& reload : calls)
        QVERIFY(!reload.isValid() || reload.reply().arguments().value(0) == QVariant(0));
}

OZNA_CASE(Stopping, Stopping)
#include "tst_Stopping.moc"

#include "BusTest.h"
#include "Lines.h"
#include "PlayKinds.h"
#include "Suite.h"

#include <QDBusPendingCall>
#include <QElapsedTimer>
#include <QRegularExpression>

#include <csignal>

using namespace Lines;
using namespace Qt::StringLiterals;

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

const QString EARLY = u"4 .Scheduler.cpp. EARLY action found"_s;

QString Ready(const QString& task)
{
    return u"4 [Scheduler.cpp] READY action found: "_s + task;
}

} // namespace

// Starts the daemon on the schedule and puts its clock to the half hour, once it has found what is due then.
void Stopping::StartAndRun(const QByteArray& schedule)
{
    WriteSchedule(schedule);
    QVERIFY(StartDaemon());
    QVERIFY(RunDue(schedule.count('\n')));
}

// What was logged after the last action was found early.
QStringList Stopping::TakeSinceEarly(unsigned int maxLevel)
{
    const QStringList lines = Daemon().Take(maxLevel);
    return lines.mid(lines.lastIndexOf(QRegularExpression(EARLY + u".*"_s)) + 1);
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
    COMPARE_LINES(Device().Calls(), {u"sound.PlayFile ss gong.mp3 08:30:00"_s});
    QStringList lines = Daemon().Take(4);
    lines = lines.mid(lines.indexOf(Ready(u"1 (PlayMessage)"_s)));
    // A far pass may come between the time-out and the end, and finds the messages once more.
    lines.removeIf([](const QString& line) { return line.contains(QRegularExpression(EARLY)); });
    QVERIFY(lines.value(1).startsWith(u"1 [tasks/PlayMessage.cpp] PlayFile request error: Did not"_s));
    lines.removeAt(1);
    COMPARE_LINES(lines, QStringList{Ready(u"1 (PlayMessage)"_s)} + Ended());
}

void Stopping::NoSecondCallIsMadeAfterASignal_data()
{
    QTest::addColumn<Request>("request");
    QTest::newRow("message") << Request::Find("SetPlayerVolume(file)", "gong.mp3,70");
    QTest::newRow("playlist") << Request::Find("SetPlayerVolume(playlist)", "day,70,morning");
    QTest::newRow("stream") << Request::Find("SetPlayerVolume(stream)", "8554/live,70");
    QTest::newRow("light") << Request::Find("SetIntensity", "50");
    QTest::newRow("radio") << Request::Find("PlayRadioFm", "98.5");
}

void Stopping::NoSecondCallIsMadeAfterASignal()
{
    QFETCH(Request, request);
    WritePlaylist("song.mp3;600\n", u"day"_s);
    const QStringList failed =
        Answered(request.Followed().Records(Outcome::BUS_ERROR), u"The scheduler is stopping"_s, 0);
    Device().AnswerStatus(request.Method().toLatin1(), 0, SLOW_MS);
    StartAndRun(Due(request));
    QVERIFY(Device().WaitForCalls(1));
    const qint64 end_ms = TimeToEnd_ms();
    QVERIFY2(end_ms < SLOW_MS + GRACE_MS, qPrintable(QString::number(end_ms)));
    COMPARE_LINES(Device().Calls(), {request.Call()});
    // Nothing is said to have been asked for that was not.
    const QStringList all = TakeSinceEarly(9);
    QVERIFY(all.filter(u"SetFrequency: "_s).isEmpty());
    QStringList found;
    for (const QString& line : all)
    {
        if (line.at(0) <= u'4')
            found.append(line);
    }
    COMPARE_LINES(found, QStringList{Ready(request.Type())} + Shown(failed, 4) + Ended());
}

void Stopping::PhotosThatWaitAskForNoFurtherStop()
{
    constexpr int PHOTOS = 50;
    Device().AnswerStatus("photo.StopPhotoStream", 1, SLOW_MS);
    StartAndRun(AT_ONE_SECOND + "RecordPhoto|1,1000\n" + AT_ONE_SECOND + "RecordPhoto|1,2\n");
    QVERIFY(Device().WaitForCalls(2));
    Device().Emit("photo.PhotoTaken", {0, u"/p.jpg"_s}, PHOTOS);
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
    QCOMPARE(Client().Call("IsEnabled"), u"0,true,schedule.csv"_s);
    static_cast<void>(Daemon().Take());
    Device().Forget();
    Device().AnswerNever("sound.StopPlay");
    const qint64 end_ms = TimeToEnd_ms();
    QVERIFY2(end_ms > SOUND_TIMEOUT_MS / 2 && end_ms < SOUND_TIMEOUT_MS + GRACE_MS,
             qPrintable(QString::number(end_ms)));
    COMPARE_LINES(Device().Calls(), QStringList(MESSAGES, u"sound.StopPlay ss file "_s));
    QStringList stops;
    for (int i = 0; i < MESSAGES; ++i)
        stops += {u"4 [tasks/PlayMessage.cpp] Scheduled Message gong.mp3 running: stop it"_s,
                  u"2 [tasks/PlayMessage.cpp] Impossible to stop scheduled file"_s};
    COMPARE_LINES(Daemon().Take(4), Ended(stops));
}

void Stopping::APeerThatAnswersWithAnErrorIsWaitedForAtTheEnd()
{
    constexpr int MESSAGES = 3;
    StartAndRun((AT_ONE_SECOND + "PlayMessage|gong.mp3\n").repeated(MESSAGES));
    QVERIFY(Device().WaitForCalls(MESSAGES));
    QCOMPARE(Client().Call("IsEnabled"), u"0,true,schedule.csv"_s);
    static_cast<void>(Daemon().Take());
    Device().AnswerError("sound.StopPlay", "out of order", 1);
    QVERIFY(TimeToEnd_ms() < SOUND_TIMEOUT_MS);
    // The others are stopped.
    QStringList stops(MESSAGES, u"4 [tasks/PlayMessage.cpp] Scheduled Message gong.mp3 running: stop it"_s);
    stops.insert(1, u"2 [tasks/PlayMessage.cpp] Impossible to stop scheduled file"_s);
    COMPARE_LINES(Daemon().Take(4), Ended(stops));
}

void Stopping::AFileIsNotReadToItsEnd()
{
    WriteSchedule((AT_ONE_SECOND + "StopMessage\n").repeated(20000));
    UseDaemon(u"tests/ozna-scheduler-faulty"_s);
    Daemon().Environment().insert(u"OZNA_FAULT"_s, u"halt"_s);
    Daemon().Environment().insert(u"OZNA_LOG_LEVEL"_s, u"4"_s);
    Daemon().Start();
    QVERIFY(Daemon().WaitUntilHalted());
    // The first load: the event loop does not run yet.
    Daemon().Signal(SIGTERM);
    Daemon().Signal(SIGCONT);
    QCOMPARE(Daemon().WaitForExit(), 0);
    QStringList lines = Daemon().Take();
    QCOMPARE(lines.removeAll(u"4 [tasks/StopMessage.cpp] TASK CREATED | StopMessage"_s), 5000);
    COMPARE_LINES(lines, CREATED + READY + Loading(DataPath(u"schedule/schedule.csv"_s)) + Ended());
}

void Stopping::ReloadsThatWaitAreLeft()
{
    constexpr int RELOADS = 3000;
    constexpr int LINES = 1000;
    constexpr int LOADS_BEFORE = 20;
    constexpr qint64 LONGEST_MS = 3000;
    WriteSchedule((AT_ONE_SECOND + "StopMessage\n").repeated(LINES));
    Daemon().Environment().insert(u"OZNA_LOG_LEVEL"_s, u"4"_s);
    QVERIFY(StartAndTakeLog());
    const QDBusMessage call = QDBusMessage::createMethodCall(SchedulerClient::SERVICE, SchedulerClient::PATH,
                                                             SchedulerClient::INTERFACE, u"Reload"_s);
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

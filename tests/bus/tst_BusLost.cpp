#include "BusTest.h"
#include "Lines.h"
#include "Suite.h"

#include <QElapsedTimer>

using namespace Lines;
using namespace Qt::StringLiterals;

// The bus goes away at an awkward moment: the daemon says so, and ends soon with -1, whatever it was doing.
class BusLost : public BusTest
{
    Q_OBJECT

private Q_SLOTS:
    void WhileIdle();
    void InTheMiddleOfABlockingCall_data();
    void InTheMiddleOfABlockingCall();
    void WithAMessageThatPlays();
    void WhileCallsWaitToBeAnswered();

private:
    // Ends the bus and waits until the daemon has ended as it should.
    void Lose(qint64 atMost_ms);
};

namespace
{

const QString LOST = u"1 [main.cpp] DBUS: Session bus connection lost"_s;
// Less than the time-outs of the calls that are waited for here, 20 s and more.
constexpr qint64 SOON_MS = 15000;

} // namespace

void BusLost::Lose(qint64 atMost_ms)
{
    QElapsedTimer timer;
    timer.start();
    Bus().Kill();
    QCOMPARE(Daemon().WaitForExit(), EXIT_FAILED);
    QVERIFY2(timer.elapsed() < atMost_ms, qPrintable(QString::number(timer.elapsed())));
}

void BusLost::WhileIdle()
{
    WriteSchedule("1111111|12:00:00|*|*|*|||StopMessage\n");
    QVERIFY(StartAndTakeLog());
    Lose(SOON_MS);
    COMPARE_LINES(Daemon().Take(4), QStringList{LOST} + Ended());
}

void BusLost::InTheMiddleOfABlockingCall_data()
{
    QTest::addColumn<QByteArray>("task");
    QTest::addColumn<QByteArray>("method");
    QTest::addColumn<QStringList>("errors");
    const auto row = [](const char* task, const char* method, const char* error) {
        QTest::newRow(task) << QByteArray(task) << QByteArray(method) << QStringList{QString::fromLatin1(error)};
    };
    // Its two calls may take fifty seconds.
    row("Light|5", "light.SetIntensity", "1 [tasks/Light.cpp] SetIntensity(5) request error");
    row("PlayRadioFm|98.5", "sound.PlayRadioFm", "4 [tasks/PlayRadioFm.cpp] PlayRadioFm() request error: ");
}

void BusLost::InTheMiddleOfABlockingCall()
{
    QFETCH(QByteArray, task);
    QFETCH(QByteArray, method);
    QFETCH(QStringList, errors);
    Device().AnswerNever(method.constData());
    WriteSchedule("1111111|08:30:00|*|*|*|||" + task + '\n');
    Time().Set(MONDAY, {8, 29, 56});
    QVERIFY(StartDaemon());
    QVERIFY(WaitUntil([&] {
        const QStringList calls = Device().Calls();
        return !calls.isEmpty() && calls.last().startsWith(QString::fromLatin1(method) + u' ');
    }));
    static_cast<void>(Daemon().Take());
    Lose(SOON_MS);
    const QStringList lines = Daemon().Take(4);
    QCOMPARE(lines.count(LOST), 1);
    QCOMPARE(lines.filter(errors.first()).size(), 1);
    COMPARE_LINES(lines.mid(lines.size() - Ended().size()), Ended());
}

void BusLost::WithAMessageThatPlays()
{
    WriteSchedule("1111111|08:30:00|*|*|*|||PlayMessage|gong.mp3\n");
    Time().Set(MONDAY, {8, 29, 52});
    QVERIFY(StartDaemon());
    QVERIFY(Daemon().WaitForLog(
        u"9 [tasks/PlayMessage.cpp] TASK START@TIME REQUESTED | PlayMessage: gong.mp3|08:30:00|-1"_s));
    static_cast<void>(Daemon().Take());
    Lose(SOON_MS);
    COMPARE_LINES(Daemon().Take(4),
                  QStringList{LOST} + Ended({u"4 [tasks/PlayMessage.cpp] Scheduled Message gong.mp3 running: stop it"_s,
                                             u"2 [tasks/PlayMessage.cpp] Impossible to stop scheduled file"_s}));
}

void BusLost::WhileCallsWaitToBeAnswered()
{
    constexpr int CALLS = 500;
    QVERIFY(StartDaemon());
    for (int i = 0; i < CALLS; ++i)
        QVERIFY(Bus().Connection().send(QDBusMessage::createMethodCall(SchedulerClient::SERVICE, SchedulerClient::PATH,
                                                                       SchedulerClient::INTERFACE, u"Reload"_s)));
    QVERIFY(Daemon().WaitForLog(RESTARTING.first()));
    Lose(WAIT_MS);
    const QStringList lines = Daemon().Take(4);
    QCOMPARE(lines.count(LOST), 1);
    COMPARE_LINES(lines.mid(lines.size() - Ended().size()), Ended());
}

OZNA_CASE(BusLost, BusLost)
#include "tst_BusLost.moc"

#include "BusTest.h"
#include "Lines.h"
#include "Suite.h"

#include <csignal>

using namespace Lines;
using namespace Qt::StringLiterals;

// Start-up in its order with every failure exit, and the ways to end.
class StartAndStop : public BusTest
{
    Q_OBJECT

private Q_SLOTS:
    void StartsInTheOrderOfItsParts();
    void EndsCleanlyOnASignal_data();
    void EndsCleanlyOnASignal();
    void EndsOnASignalWhileDisabled();
    void TellsTheBusThatItStops();
    void IgnoresOtherSignals();
    void EndsOnceForManySignals();
    void ASecondInstanceGivesUp();
    void WithoutABusOnlyStandardOutputTells_data();
    void WithoutABusOnlyStandardOutputTells();
    void EndsWhenTheBusIsLost();
    void AHandlerThatCannotBeInstalledIsReported_data();
    void AHandlerThatCannotBeInstalledIsReported();
    void WithoutADescriptorNeitherSignalIsCaught();
    void ALimitThatStaysIsReported();
    void AnObjectThatIsRefusedEndsTheStart();
    void AnExceptionEndsTheStartNormally();
    void AnExceptionAfterTheStartStopsWhatThereIs();
    void ReadsTheDeviceFolderWhenInstalled();

private:
    QStringList StartUp() const;
    void UseFaultyDaemon(const QString& fault);
};

QStringList StartAndStop::StartUp() const
{
    return CREATED + READY + Loading(DataPath(u"schedule/schedule.csv"_s)) + NOT_FOUND + STARTED;
}

// The daemon, linked once more with some library functions replaced by ones that can fail.
void StartAndStop::UseFaultyDaemon(const QString& fault)
{
    UseDaemon(u"tests/ozna-scheduler-faulty"_s);
    Daemon().Environment().insert(u"OZNA_FAULT"_s, fault);
}

void StartAndStop::StartsInTheOrderOfItsParts()
{
    QVERIFY(StartDaemon());
    COMPARE_LINES(Daemon().Take(5), StartUp());
    QCOMPARE(Client().Call("IsEnabled"), u"0,true,schedule.csv"_s);
    QCOMPARE(Device().Calls(), QStringList());
    QCOMPARE(Daemon().Output(), QByteArray());
}

void StartAndStop::EndsCleanlyOnASignal_data()
{
    QTest::addColumn<int>("signal");
    QTest::newRow("SIGINT") << SIGINT;
    QTest::newRow("SIGTERM") << SIGTERM;
}

void StartAndStop::EndsCleanlyOnASignal()
{
    QFETCH(int, signal);
    QVERIFY(StartDaemon());
    COMPARE_LINES(Daemon().Take(5), StartUp());
    Daemon().Signal(signal);
    QCOMPARE(Daemon().WaitForExit(), 0);
    COMPARE_LINES(Daemon().Take(5), Ended());
    QCOMPARE(Daemon().Output(), QByteArray());
}

void StartAndStop::EndsOnASignalWhileDisabled()
{
    QVERIFY(StartDaemon());
    QCOMPARE(Client().Call("SetEnabled", {false}), u"0"_s);
    static_cast<void>(Daemon().Take());
    QCOMPARE(StopDaemon(), 0);
    COMPARE_LINES(Daemon().Take(5), WAS_DISABLED + STOPPED + TERMINATED);
    COMPARE_LINES(Client().WaitForSignals(2), QStringList(2, u"SchedulingEnabled(false,schedule.csv)"_s));
}

void StartAndStop::TellsTheBusThatItStops()
{
    QVERIFY(StartDaemon());
    QCOMPARE(StopDaemon(), 0);
    COMPARE_LINES(Client().WaitForSignals(1), {u"SchedulingEnabled(false,schedule.csv)"_s});
}

void StartAndStop::IgnoresOtherSignals()
{
    QVERIFY(StartDaemon());
    Daemon().Signal(SIGWINCH);
    QCOMPARE(Client().Call("IsEnabled"), u"0,true,schedule.csv"_s);
    QCOMPARE(StopDaemon(), 0);
}

void StartAndStop::EndsOnceForManySignals()
{
    QVERIFY(StartAndTakeLog());
    for (int i = 0; i < 20; ++i)
        Daemon().Signal(i % 2 == 0 ? SIGTERM : SIGINT);
    QCOMPARE(Daemon().WaitForExit(), 0);
    COMPARE_LINES(Daemon().Take(5), Ended());
}

void StartAndStop::ASecondInstanceGivesUp()
{
    QVERIFY(StartDaemon());
    const std::unique_ptr<DaemonProcess> first = UseDaemon(u"ozna-scheduler-local"_s);
    Daemon().Start();
    QCOMPARE(Daemon().WaitForExit(), EXIT_FAILED);
    COMPARE_LINES(Daemon().Take(),
                  CREATED + QStringList{u"1 [main.cpp] DBUS: Can't register service [com.kestrelix.ozna.scheduler]"_s});
    QCOMPARE(Daemon().Output(), QByteArray());
    QCOMPARE(Client().Call("IsEnabled"), u"0,true,schedule.csv"_s);
    QVERIFY(first->IsRunning());
}

void StartAndStop::WithoutABusOnlyStandardOutputTells_data()
{
    QTest::addColumn<QString>("address");
    QTest::newRow("no socket at the address") << u"unix:path=/nonexistent"_s;
    QTest::newRow("an address of no form") << u"nonsense"_s;
}

void StartAndStop::WithoutABusOnlyStandardOutputTells()
{
    QFETCH(QString, address);
    Daemon().Environment().insert(u"DBUS_SESSION_BUS_ADDRESS"_s, address);
    Daemon().Start();
    QCOMPARE(Daemon().WaitForExit(), EXIT_FAILED);
    QCOMPARE(Daemon().Output(), QByteArray("DBUS: Can't connect session bus\n"));
    COMPARE_LINES(Daemon().Take(), CREATED + QStringList{u"1 [main.cpp] DBUS: Can't connect session bus"_s});
}

void StartAndStop::EndsWhenTheBusIsLost()
{
    QVERIFY(StartAndTakeLog());
    Bus().Kill();
    QCOMPARE(Daemon().WaitForExit(), EXIT_FAILED);
    COMPARE_LINES(Daemon().Take(5), QStringList{u"1 [main.cpp] DBUS: Session bus connection lost"_s} + Ended());
}

void StartAndStop::AHandlerThatCannotBeInstalledIsReported_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("other");
    QTest::newRow("SIGINT") << u"SIGINT"_s << SIGTERM;
    QTest::newRow("SIGTERM") << u"SIGTERM"_s << SIGINT;
}

void StartAndStop::AHandlerThatCannotBeInstalledIsReported()
{
    QFETCH(QString, name);
    QFETCH(int, other);
    UseFaultyDaemon(name);
    QVERIFY(StartDaemon());
    COMPARE_LINES(Daemon().Take(5),
                  CREATED + QStringList{u"2 [main.cpp] Can't catch %1"_s.arg(name)} + StartUp().mid(1));
    Daemon().Signal(other);
    QCOMPARE(Daemon().WaitForExit(), 0);
    COMPARE_LINES(Daemon().Take(5), Ended());
}

void StartAndStop::WithoutADescriptorNeitherSignalIsCaught()
{
    UseFaultyDaemon(u"eventfd"_s);
    QVERIFY(StartDaemon());
    COMPARE_LINES(Daemon().Take(5),
                  CREATED + QStringList{u"2 [main.cpp] Can't catch SIGINT"_s, u"2 [main.cpp] Can't catch SIGTERM"_s} +
                      StartUp().mid(1));
}

void StartAndStop::ALimitThatStaysIsReported()
{
    UseFaultyDaemon(u"reading"_s);
    QVERIFY(StartDaemon());
    COMPARE_LINES(Daemon().Take(5), CREATED +
                                        QStringList{u"2 [main.cpp] DBUS: Can't lift the limit on waiting messages"_s} +
                                        StartUp().mid(1));
    QCOMPARE(Client().Call("IsEnabled"), u"0,true,schedule.csv"_s);
    QCOMPARE(StopDaemon(), 0);
}

void StartAndStop::AnObjectThatIsRefusedEndsTheStart()
{
    UseFaultyDaemon(u"object"_s);
    Daemon().Start();
    QCOMPARE(Daemon().WaitForExit(), EXIT_FAILED);
    COMPARE_LINES(
        Daemon().Take(),
        CREATED +
            QStringList{u"1 [main.cpp] DBUS: Can't register object [/com/kestrelix/ozna/scheduler/schedulerobj]"_s});
    QCOMPARE(Daemon().Output(), QByteArray());
}

void StartAndStop::AnExceptionEndsTheStartNormally()
{
    UseFaultyDaemon(u"scheduler"_s);
    Daemon().Start();
    QCOMPARE(Daemon().WaitForExit(), 0);
    COMPARE_LINES(Daemon().Take(),
                  CREATED + QStringList{u"1 [main.cpp] Impossible to create scheduler"_s} + TERMINATED);
}

void StartAndStop::AnExceptionAfterTheStartStopsWhatThereIs()
{
    UseFaultyDaemon(u"run"_s);
    Daemon().Start();
    QCOMPARE(Daemon().WaitForExit(), 0);
    COMPARE_LINES(Daemon().Take(), CREATED + READY + QStringList{u"1 [main.cpp] Impossible to create scheduler"_s} +
                                       STOPPED + TERMINATED);
}

void StartAndStop::ReadsTheDeviceFolderWhenInstalled()
{
    WriteSchedule("1111111|08:30:00|*|*|*|||StopMessage\n");
    UseDaemon(u"ozna-scheduler"_s);
    QVERIFY(StartDaemon());
    QVERIFY(
        Daemon().Log().contains(u"4 [Scheduler.cpp] Loading schedule from /opt/ozna/data/schedule/schedule.csv..."_s));
}

OZNA_CASE(StartAndStop, StartAndStop)
#include "tst_StartAndStop.moc"

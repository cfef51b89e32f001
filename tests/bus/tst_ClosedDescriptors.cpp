#include "BusTest.h"
#include "Suite.h"

#include <unistd.h>

using namespace Qt::StringLiterals;

// A daemon that is started with standard input, output or error closed.
class ClosedDescriptors : public BusTest
{
    Q_OBJECT

private Q_SLOTS:
    void NothingElseGetsTheNumberOfAClosedOne_data();
    void NothingElseGetsTheNumberOfAClosedOne();
    void WithoutABusItEndsAsEver();
};

void ClosedDescriptors::NothingElseGetsTheNumberOfAClosedOne_data()
{
    QTest::addColumn<QList<int>>("closed");
    QTest::newRow("none") << QList<int>{};
    QTest::newRow("input") << QList<int>{STDIN_FILENO};
    QTest::newRow("output") << QList<int>{STDOUT_FILENO};
    QTest::newRow("error") << QList<int>{STDERR_FILENO};
    QTest::newRow("output and error") << QList<int>{STDOUT_FILENO, STDERR_FILENO};
    QTest::newRow("all") << QList<int>{STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO};
}

void ClosedDescriptors::NothingElseGetsTheNumberOfAClosedOne()
{
    QFETCH(QList<int>, closed);
    Daemon().CloseAtStart(closed);
    Daemon().Start();
    QVERIFY(Bus().WaitForService(SchedulerClient::SERVICE));
    for (const int descriptor : closed)
        QCOMPARE(Daemon().Opened(descriptor), u"/dev/null"_s);

    // A record on the bus's socket would end the connection.
    QCOMPARE(Client().Call("SetEnabled", {false}), u"0"_s);
    QCOMPARE(Client().Call("SetEnabled", {true}), u"0"_s);
    QCOMPARE(Client().Call("IsEnabled"), u"0,true,schedule.csv"_s);
    QCOMPARE(StopDaemon(), 0);
}

void ClosedDescriptors::WithoutABusItEndsAsEver()
{
    Daemon().CloseAtStart({STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO});
    Daemon().Environment().insert(u"DBUS_SESSION_BUS_ADDRESS"_s, u"unix:path=/nonexistent"_s);
    Daemon().Start();
    QCOMPARE(Daemon().WaitForExit(), EXIT_FAILED);
}

OZNA_CASE(ClosedDescriptors, ClosedDescriptors)
#include "tst_ClosedDescriptors.moc"

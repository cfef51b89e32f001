#include "Suite.h"
#include "UnitTest.h"
#include "process/BusWatcher.h"
#include "process/SignalPipe.h"

#include <QDBusConnection>

#include <cerrno>
#include <stdexcept>

using namespace Qt::StringLiterals;

class EventLoopTest final : public UnitTest
{
    Q_OBJECT
private Q_SLOTS:
    void AWakeReachesTheEventLoop();
    void AWatcherNeedsABus();
};

void EventLoopTest::AWakeReachesTheEventLoop()
{
    // As from a signal handler: the interrupted code's errno is its own, also where there is nobody to wake yet.
    errno = EDOM;
    SignalPipe::Wake();
    QCOMPARE(errno, EDOM);

    int woken = 0;
    QVERIFY(SignalPipe::Open([&woken] { ++woken; }));
    QCoreApplication::processEvents();
    QCOMPARE(woken, 0);

    SignalPipe::Wake();
    QCOMPARE(errno, EDOM);
    QCOMPARE(woken, 0);
    QTRY_COMPARE(woken, 1);

    // Several before the loop turns are one.
    SignalPipe::Wake();
    SignalPipe::Wake();
    QTRY_COMPARE(woken, 2);
    QCoreApplication::processEvents();
    QCOMPARE(woken, 2);
}

void EventLoopTest::AWatcherNeedsABus()
{
    BusWatcher watcher([] {});
    QVERIFY(!watcher.Watch(QDBusConnection::sessionBus()));
}

OZNA_CASE(EventLoop, EventLoopTest)
#include "tst_EventLoop.moc"

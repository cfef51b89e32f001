#include "BusTest.h"
#include "Lines.h"
#include "ProcessMemory.h"
#include "Suite.h"

#include <QDBusPendingCall>

using namespace Lines;
using namespace Qt::StringLiterals;

// Schedule file names as long as the bus carries them: kept and given back, and neither the connection nor the memory
// is lost to them.
class Names : public BusTest
{
    Q_OBJECT

private Q_SLOTS:
    void AVeryLongNameIsKept_data();
    void AVeryLongNameIsKept();
    void ALongNameOfControlCharactersIsOneLineInTheLog();
    void LongCallsThatWaitForASlowPeerAreAnswered();
};

namespace
{

constexpr int MEGABYTE = 1 << 20;
// Beside the name itself the library keeps a few buffers.
constexpr long TOLERATED_KB = 4096;
// Of what the bus carries, all that the call and its path through the bus need beside the name.
constexpr int OVERHEAD = 280;

QByteArray Escaped(const QByteArray& text)
{
    return QByteArray(text).replace("\n", "\\n").replace("\r", "\\r").replace("\t", "\\t").replace("\x1b", "\\x1b");
}

} // namespace

void Names::AVeryLongNameIsKept_data()
{
    QTest::addColumn<int>("length");
    QTest::newRow("64 MB") << 64 * MEGABYTE;
    if (IsLong())
        QTest::newRow("as long as the bus carries") << 128 * MEGABYTE - OVERHEAD;
}

void Names::AVeryLongNameIsKept()
{
    QFETCH(int, length);
    WriteSchedule("1111111|12:00:00|*|*|*|||StopMessage\n");
    QVERIFY(StartDaemon());
    QCOMPARE(Client().Call("SetScheduleFile", {u"none.csv"_s}), u"0"_s);
    const long before_kB = MemoryKilobytes(DaemonPid(), "VmRSS");
    static_cast<void>(Daemon().Take());

    const QString name(length, u'x');
    QCOMPARE(Client().Call("SetScheduleFile", {name}), u"0"_s);
    // The longest message that the daemon sends carries the same name.
    QCOMPARE(Client().Call("SetEnabled", {true}), u"0"_s);
    QVERIFY(Client().WaitForSignals(1) == QStringList{u"SchedulingEnabled(true,%1)"_s.arg(name)});
    QVERIFY(Client().Call("IsEnabled") == u"0,true,"_s + name);
    const QStringList records = Daemon().Take(4);
    QCOMPARE(records.size(), 13);
    COMPARE_LINES(records.mid(8, 2), NOT_FOUND + TOO_LONG);
    for (const QString& record : records)
        QVERIFY(record.size() <= 512);

    QCOMPARE(Client().Call("SetScheduleFile", {u"schedule.csv"_s}), u"0"_s);
    QVERIFY(Daemon().Log().contains(Loaded(1).first()));
    long after_kB = 0;
    const bool isFreed = WaitUntil([&] {
        // What the library's own thread lets go after a reload is given back by the next.
        static_cast<void>(Client().Call("Reload"));
        after_kB = MemoryKilobytes(DaemonPid(), "VmRSS");
        return IsSanitized() || after_kB <= before_kB + TOLERATED_KB;
    });
    qInfo("resident before: %ld kB, after: %ld kB, at most: %ld kB", before_kB, after_kB,
          MemoryKilobytes(DaemonPid(), "VmHWM"));
    QVERIFY(isFreed);
    QCOMPARE(StopDaemon(), 0);
}

void Names::ALongNameOfControlCharactersIsOneLineInTheLog()
{
    QVERIFY(StartAndTakeLog());
    const QByteArray unit = "1 /forged [main.cpp:1] gone\n\x1b[2J\x1b]0;title\t%s%n\r";
    const QString name = QString::fromLatin1(unit.repeated(MEGABYTE / unit.size()));
    QCOMPARE(Client().Call("SetScheduleFile", {name}), u"0"_s);

    // A record has 511 bytes with its prefix, whose line number has two digits or three; escapes come on top.
    const QStringList found = Daemon().Take(4);
    const QString level = u"4 [Scheduler.cpp] "_s;
    const auto cut = [&](const QByteArray& text) {
        const auto shown = [&text](const QByteArray& prefix) {
            return QString::fromLatin1(Escaped(text.left(511 - prefix.size())));
        };
        const QString longer = shown("[Scheduler.cpp:10] ");
        return found.contains(level + longer) ? longer : shown("[Scheduler.cpp:100] ");
    };
    const QByteArray path = DataPath(u"schedule/"_s).toUtf8() + name.toLatin1();
    COMPARE_LINES(found, QStringList{level + cut("Schedule file set to " + name.toLatin1())} + RESTARTING + STOPPED +
                             QStringList{u"4 [Scheduler.cpp] Starting schedule..."_s} +
                             QStringList{level + cut("Loading schedule from " + path + "...")} + NOT_FOUND + TOO_LONG +
                             STARTED);
    QVERIFY(Client().Call("IsEnabled") == u"0,true,"_s + name);
    QCOMPARE(StopDaemon(), 0);
}

void Names::LongCallsThatWaitForASlowPeerAreAnswered()
{
    // More than the bus library lets wait unless it is told otherwise.
    constexpr int CALLS = 34;
    Device().AnswerStatus("light.Switch", 0, 2000, 1);
    WriteSchedule("1111111|08:30:00|*|*|*|||Light|0\n");
    Time().Set(MONDAY, {8, 29, 56});
    QVERIFY(StartDaemon());
    const long before_kB = MemoryKilobytes(DaemonPid(), "VmRSS");
    QVERIFY(Device().WaitForCalls(1));

    QList<QDBusPendingCall> calls;
    for (int i = 0; i < CALLS; ++i)
    {
        QDBusMessage call = QDBusMessage::createMethodCall(SchedulerClient::SERVICE, SchedulerClient::PATH,
                                                           SchedulerClient::INTERFACE, u"SetScheduleFile"_s);
        call.setArguments({QString(2 * MEGABYTE, QChar(u'a' + i % 26))});
        calls.append(Bus().Connection().asyncCall(call));
    }
    for (QDBusPendingCall& call : calls)
    {
        call.waitForFinished();
        QVERIFY2(!call.isError(), qPrintable(call.error().message()));
        QCOMPARE(call.reply().arguments(), QVariantList{0});
    }
    QCOMPARE(Client().Call("SetScheduleFile", {u"none.csv"_s}), u"0"_s);
    QCOMPARE(Client().Call("IsEnabled"), u"0,true,none.csv"_s);
    const bool isFreed =
        WaitUntil([&] { return IsSanitized() || MemoryKilobytes(DaemonPid(), "VmRSS") <= before_kB + TOLERATED_KB; });
    qInfo("resident before: %ld kB, after: %ld kB, at most: %ld kB", before_kB, MemoryKilobytes(DaemonPid(), "VmRSS"),
          MemoryKilobytes(DaemonPid(), "VmHWM"));
    QVERIFY(isFreed);
    COMPARE_LINES(Daemon().Take(2), QList<QString>(CALLS, TOO_LONG.first()));
}

OZNA_CASE(Names, Names)
#include "tst_Names.moc"

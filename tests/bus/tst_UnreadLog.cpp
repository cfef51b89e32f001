#include "BusTest.h"
#include "Lines.h"
#include "LogPipe.h"
#include "Suite.h"

#include <QRegularExpression>

using namespace Lines;
using namespace Qt::StringLiterals;

// A daemon whose log nobody reads goes on with its work, and the log tells later what is missing.
class UnreadLog : public BusTest
{
    Q_OBJECT

private Q_SLOTS:
    void TheDaemonGoesOnAndTheCountsAddUp();
};

namespace
{

constexpr int LINES = 2000; // each a record of about a hundred bytes, far more than a pipe holds
const QByteArray LINE = "1111111|12:00:00|*|*|*|||StopMessage\n";
const QByteArray DUE = "1111111|08:30:00|*|*|*|||Volume|10\n";
constexpr int RECORDS_OF_DUE = 4; // that it is made, early, ready and asked for

} // namespace

void UnreadLog::TheDaemonGoesOnAndTheCountsAddUp()
{
    WriteSchedule(LINE.repeated(LINES) + DUE);
    LogPipe log(DataPath(u"log"_s));
    Daemon().LogTo(DataPath(u"log"_s));
    Daemon().Environment().insert(u"OZNA_LOG_LEVEL"_s, u"4"_s);
    Daemon().Start();
    QVERIFY(log.WaitUntilFull());
    QVERIFY(Bus().WaitForService(SchedulerClient::SERVICE));
    QCOMPARE(Client().Call("IsEnabled"), u"0,true,schedule.csv"_s);
    QVERIFY(Device().WaitForCalls(1));
    COMPARE_LINES(Device().Calls(), {u"sound.SetMasterVolume d 10"_s});

    // What is in the pipe; then there is room, and with the next record comes how many are missing.
    QVERIFY(log.ReadUntil("StopMessage\n"));
    QVERIFY(!log.Log().contains("Schedule loaded"));
    QVERIFY(!log.Log().contains("Log records lost"));
    const qsizetype written = log.Log().count('\n');
    QVERIFY(written < LINES);
    QCOMPARE(Client().Call("SetEnabled", {true}), u"0"_s);
    QVERIFY(log.ReadUntil("Scheduler is enabled\n"));

    static const QRegularExpression loss(u"\\n2 /com/kestrelix/ozna/scheduler/schedulerobj "
                                         "\\[LogInterface\\.cpp:[0-9]+\\] Log records lost: ([0-9]+)\\n"
                                         "4 /com/kestrelix/ozna/scheduler/schedulerobj \\[Scheduler\\.cpp:[0-9]+\\] "
                                         "Scheduler is enabled\\n$"_s);
    const QRegularExpressionMatch told = loss.match(QString::fromUtf8(log.Log()));
    QVERIFY2(told.hasMatch(), log.Log().right(400).constData());
    const QStringList all = CREATED + READY + Loading(QString()) + Loaded(LINES + 1) + STARTED;
    QCOMPARE(written + told.captured(1).toInt(), all.size() + LINES + RECORDS_OF_DUE);

    // From here on the log is whole again.
    QCOMPARE(StopDaemon(), 0);
    QVERIFY(log.ReadUntil("Succesfully terminated\n"));
    QCOMPARE(log.Log().count('\n'), written + 2 + Ended().size());
}

OZNA_CASE(UnreadLog, UnreadLog)
#include "tst_UnreadLog.moc"

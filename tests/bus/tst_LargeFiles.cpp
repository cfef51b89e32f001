#include "BusTest.h"
#include "Lines.h"
#include "ProcessMemory.h"
#include "Suite.h"

#include <QElapsedTimer>

#include <unistd.h>

using namespace Lines;
using namespace Qt::StringLiterals;

// Files far larger than any schedule: what is in them is scheduled, in bounded time and memory.
class LargeFiles : public BusTest
{
    Q_OBJECT

private Q_SLOTS:
    void AHugeLineCostsItselfOnly_data();
    void AHugeLineCostsItselfOnly();
    void APlaylistWithAHoleKeepsItsTracks();
    void AHugeScheduleGivesItsMemoryBack();

private:
    void StartAndMeasure(const char* what);
    [[nodiscard]] bool IsFreed(long before_kB);
};

namespace
{

constexpr qint64 MEGABYTE = 1 << 20;
constexpr long KB_PER_MB = 1024;
constexpr long TOLERATED_KB = 4096;
const QByteArray ONE_LINE = "1111111|12:00:00|*|*|*|||StopMessage\n";
const QByteArray DUE_LINE = "1111111|08:30:04|*|*|*|||Volume|10\n";
const QDateTime SOON(QDate(2024, 1, 15), QTime(8, 30), Qt::UTC);

void Grow(const QString& path, qint64 size)
{
    if (::truncate(qPrintable(path), size) != 0)
        qFatal("cannot make %s larger", qPrintable(path));
}

void Append(const QString& path, const QByteArray& content)
{
    QFile file(path);
    if (!file.open(QIODevice::Append) || file.write(content) != content.size())
        qFatal("cannot write %s", qPrintable(path));
}

} // namespace

void LargeFiles::StartAndMeasure(const char* what)
{
    QElapsedTimer timer;
    timer.start();
    Daemon().Start();
    QVERIFY(WaitUntil([this] { return Daemon().Log().contains(STARTED.last()); }, 10 * WAIT_MS));
    qInfo("%s: started after %lld ms, resident: %ld kB, at most: %ld kB", what, timer.elapsed(),
          MemoryKilobytes(DaemonPid(), "VmRSS"), MemoryKilobytes(DaemonPid(), "VmHWM"));
}

bool LargeFiles::IsFreed(long before_kB)
{
    return WaitUntil(
        [&] { return IsSanitized() || MemoryKilobytes(DaemonPid(), "VmRSS") <= before_kB + TOLERATED_KB; });
}

void LargeFiles::AHugeLineCostsItselfOnly_data()
{
    QTest::addColumn<char>("character");
    QTest::addColumn<QString>("reason");
    QTest::newRow("a hole, as a lost write leaves it")
        << '\0' << u"1 [Action.cpp] Wrong action fields (1 found, at least 8 expected)"_s;
    QTest::newRow("nothing but separators")
        << '|' << u"1 [Action.cpp] Wrong action start time (: hour:minute:second expected)"_s;
}

void LargeFiles::AHugeLineCostsItselfOnly()
{
    QFETCH(char, character);
    QFETCH(QString, reason);
    const qint64 size = IsSanitized() ? 20 * MEGABYTE : 200 * MEGABYTE;
    const QString path = DataPath(u"schedule/schedule.csv"_s);
    WriteSchedule(ONE_LINE);
    if (character == '\0')
        Grow(path, size);
    else
        Append(path, QByteArray(size, character));
    Append(path, "\n" + DUE_LINE);
    StartAndMeasure(QTest::currentDataTag());
    COMPARE_LINES(Daemon().Take(2), {reason, u"2 [Scheduler.cpp] Action ignored"_s});
    QVERIFY(Daemon().Log().contains(Loaded(2).first()));
    // A character takes two bytes, and the text is there once.
    const long most_kB = MemoryKilobytes(DaemonPid(), "VmHWM");
    QVERIFY2(IsSanitized() || most_kB < 500 * KB_PER_MB, qPrintable(QString::number(most_kB)));
    QVERIFY(IsFreed(20 * KB_PER_MB));
    QCOMPARE(Client().Call("IsEnabled"), u"0,true,schedule.csv"_s);
    Time().Set(SOON);
    QVERIFY(Device().WaitForCalls(1));
    COMPARE_LINES(Device().Calls(), {u"sound.SetMasterVolume d 10"_s});
}

void LargeFiles::APlaylistWithAHoleKeepsItsTracks()
{
    const QString path = DataPath(u"playlists/day"_s);
    WritePlaylist("first.mp3;60\n", u"day"_s);
    Grow(path, IsSanitized() ? 20 * MEGABYTE : 200 * MEGABYTE);
    Append(path, "\nlast.mp3;30\n");
    WriteSchedule("1111111|08:30:04|*|*|*|||PlayPlaylist|day\n");
    StartAndMeasure("a playlist with a hole");
    const long most_kB = MemoryKilobytes(DaemonPid(), "VmHWM");
    QVERIFY2(IsSanitized() || most_kB < 500 * KB_PER_MB, qPrintable(QString::number(most_kB)));
    const QStringList log = Daemon().Take(4);
    QCOMPARE(log.filter(u"Playlist line error: )"_s).size(), 1);
    QCOMPARE(log.filter(u"Playlist loaded (2 tracks)"_s).size(), 1);
    QVERIFY(IsFreed(20 * KB_PER_MB));
    Time().Set(SOON);
    QVERIFY(Device().WaitForCalls(1));
    COMPARE_LINES(Device().Calls(), {u"sound.PlayPlaylist ssusb day  1 08:30:04 false"_s});
}

void LargeFiles::AHugeScheduleGivesItsMemoryBack()
{
    // A line becomes about 500 bytes. 200 MB of lines are for those who have the memory, and the log is left out.
    const qint64 size = IsLong() ? 200 * MEGABYTE : 2 * MEGABYTE;
    const qsizetype lines = size / ONE_LINE.size();
    WriteSchedule(DUE_LINE);
    Daemon().Environment().insert(u"OZNA_LOG_LEVEL"_s, u"2"_s);
    Daemon().Start();
    QVERIFY(Bus().WaitForService(SchedulerClient::SERVICE));
    QCOMPARE(Client().Call("IsEnabled"), u"0,true,schedule.csv"_s);
    const long before_kB = MemoryKilobytes(DaemonPid(), "VmRSS");

    WriteSchedule(ONE_LINE.repeated(lines), u"huge.csv"_s);
    QElapsedTimer timer;
    timer.start();
    Device().Emit("update.FilesUpdated", {0, 2});
    // The call that comes next is answered when the file has been read.
    QDBusMessage call = QDBusMessage::createMethodCall(SchedulerClient::SERVICE, SchedulerClient::PATH,
                                                       SchedulerClient::INTERFACE, u"SetScheduleFile"_s);
    call.setArguments({u"huge.csv"_s});
    const QDBusMessage reply = Bus().Connection().call(call, QDBus::Block, 600000);
    QCOMPARE(reply.arguments(), QVariantList{0});
    const qint64 loaded_ms = timer.elapsed();
    const long loaded_kB = MemoryKilobytes(DaemonPid(), "VmRSS");
    timer.restart();
    call.setArguments({u"schedule.csv"_s});
    QCOMPARE(Bus().Connection().call(call, QDBus::Block, 600000).arguments(), QVariantList{0});
    const qint64 replaced_ms = timer.elapsed();
    const bool isFreed = IsFreed(before_kB);
    qInfo("%lld lines: loaded in %lld ms, replaced in %lld ms; resident before: %ld kB, loaded: %ld kB, after: %ld kB",
          static_cast<qint64>(lines), loaded_ms, replaced_ms, before_kB, loaded_kB,
          MemoryKilobytes(DaemonPid(), "VmRSS"));
    // All lines were there.
    QVERIFY(loaded_kB - before_kB > static_cast<long>(lines / 3));
    QVERIFY(isFreed);
    Time().Set(SOON);
    QVERIFY(Device().WaitForCalls(1));
    COMPARE_LINES(Device().Calls(), {u"sound.SetMasterVolume d 10"_s});
}

OZNA_CASE(LargeFiles, LargeFiles)
#include "tst_LargeFiles.moc"

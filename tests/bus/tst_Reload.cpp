#include "BusTest.h"
#include "Lines.h"
#include "Suite.h"

using namespace Lines;
using namespace Qt::StringLiterals;

// Two thousand reloads, as years of installed schedules bring them, leave the process as it was.
class Reload : public BusTest
{
    Q_OBJECT

private Q_SLOTS:
    void ThousandsOfTimesTakesNoMemory();

private:
    [[nodiscard]] bool ReloadTimes(int times);
    [[nodiscard]] long ResidentKilobytes() const;
};

namespace
{

constexpr int WARM_UP = 200;
constexpr int RELOADS = 2000;
constexpr long TOLERATED_KB = 512;
constexpr int REPEATED = 2;

// A line of each kind, with what it allocates and connects.
constexpr const char* TASKS[] = {"PlayMessage|gong.mp3,70",
                                 "PlayPlaylist|day,50,p1",
                                 "PlayStream|8554/live",
                                 "PlayRadioFm|98.5",
                                 "StopMessage",
                                 "StopPlaylist|p1",
                                 "StopStream",
                                 "StopRadioFm",
                                 "enableAux|1",
                                 "Volume|5",
                                 "Light|5",
                                 "Amplifiers|5",
                                 "Camera|1",
                                 "SetCpuFreq|1",
                                 "Gps|1",
                                 "Lan|1",
                                 "RecordPhoto|10,3",
                                 "19|1,1"};

} // namespace

bool Reload::ReloadTimes(int times)
{
    for (int i = 0; i < times; ++i)
    {
        if (Client().Call("Reload") != u"0"_s)
            return false;
    }
    return true;
}

long Reload::ResidentKilobytes() const
{
    QFile file(u"/proc/%1/status"_s.arg(DaemonPid()));
    if (!file.open(QIODevice::ReadOnly))
        return -1;
    for (const QByteArray& line : file.readAll().split('\n'))
    {
        if (line.startsWith("VmRSS:"))
            return line.simplified().split(' ').value(1).toLong();
    }
    return -1;
}

void Reload::ThousandsOfTimesTakesNoMemory()
{
    WritePlaylist("first.mp3;60\nsecond.mp3;30\n", u"day"_s);
    QByteArray schedule;
    for (const char* task : TASKS)
        schedule += QByteArray("1111111|12:00:00|*|*|*|20240101|20301231|") + task + '\n';
    WriteSchedule(schedule.repeated(REPEATED) + "rejected\n1111111|12:00:00|*|*|*|||PlayPlaylist|none\n");
    Daemon().Environment().insert(u"OZNA_LOG_LEVEL"_s, u"4"_s);
    QVERIFY(StartDaemon());
    QVERIFY(ReloadTimes(WARM_UP));
    const long before_kB = ResidentKilobytes();
    QVERIFY(before_kB > 0);
    QVERIFY(ReloadTimes(RELOADS));
    const long grown_kB = ResidentKilobytes() - before_kB;
    qInfo("resident after %d reloads: %ld kB; after %d more: %+ld kB", WARM_UP, before_kB, RELOADS, grown_kB);
    // A sanitizer keeps freed memory back on purpose; it looks for leaks itself when the daemon ends.
    if (!IsSanitized())
        QVERIFY2(grown_kB <= TOLERATED_KB, qPrintable(QString::number(grown_kB)));
    QCOMPARE(StopDaemon(), 0);
    QCOMPARE(Daemon().Log().count(RESTARTING.first()), WARM_UP + RELOADS);
    // Two rejected lines, one with a reason and one, a playlist, with two; and the warnings of SetCpuFreq.
    constexpr int WARNINGS = 2 + 3 + REPEATED;
    QCOMPARE(Daemon().Take(2).size(), (WARM_UP + RELOADS + 1) * WARNINGS);
}

OZNA_CASE(Reload, Reload)
#include "tst_Reload.moc"

#include "BusTest.h"
#include "Suite.h"

using namespace Qt::StringLiterals;

// The clock of the running process is set. What becomes of each kind of line is tested on the engine; here the process
// has to follow at all.
class ClockJumps : public BusTest
{
    Q_OBJECT
private Q_SLOTS:
    void ADeviceWithoutAClockBeginsIn1970();
    void BackAndForthOverAStart();
    void FromBefore2038ToAfter();

private:
    // Waits until two far passes have seen the clock, and the daemon has done what they found.
    [[nodiscard]] bool WaitForPasses();
};

namespace
{

const QString VOLUME = u"sound.SetMasterVolume d 1"_s;

} // namespace

bool ClockJumps::WaitForPasses()
{
    for (int i = 0; i < 2; ++i)
    {
        static_cast<void>(Daemon().Take());
        if (!Daemon().WaitForLog(u"9 [Scheduler.cpp] Checking far actions"_s))
            return false;
    }
    return Client().Call("IsEnabled") == u"0,true,schedule.csv"_s;
}

void ClockJumps::ADeviceWithoutAClockBeginsIn1970()
{
    WriteSchedule("1111111|08:30:00|*|*|*|||Volume|1\n1000000|08:30:00|*|*|*|||Volume|2\n"
                  "1111111|08:30:00|*|*|*||19991231|Volume|3\n");
    Time().Set(QDate(1970, 1, 1), {0, 0, 10});
    QVERIFY(StartDaemon());
    QVERIFY(WaitForPasses());
    COMPARE_LINES(Device().Calls(), {});
    Time().Set(MONDAY, {8, 29, 52});
    QVERIFY(Device().WaitForCalls(2));
    QVERIFY(WaitForPasses());
    COMPARE_LINES(Device().Calls(), {VOLUME, u"sound.SetMasterVolume d 2"_s});
}

void ClockJumps::BackAndForthOverAStart()
{
    WritePlaylist("first.mp3;60\nsecond.mp3;30\nthird.mp3;45\n", u"day"_s);
    WriteSchedule("1111111|08:30:00|*|*|*|||Volume|1\n1111111|09:00:00|*|*|*|||PlayPlaylist|day\n");
    Time().Set(MONDAY, {8, 29, 52});
    QVERIFY(StartDaemon());
    QVERIFY(Device().WaitForCalls(1));
    Time().Set(MONDAY, {8, 29, 52});
    QVERIFY(Device().WaitForCalls(2));
    COMPARE_LINES(Device().Calls(), {VOLUME, VOLUME});
    // Found early, and then over it.
    Time().Set(MONDAY, {8, 29, 49});
    QVERIFY(Daemon().WaitForLog(u"4 [Scheduler.cpp] READY action found: 5 (Volume)"_s));
    static_cast<void>(Daemon().Take());
    QVERIFY(Daemon().WaitForLog(u"4 [Scheduler.cpp] EARLY action found: 5 (Volume)"_s));
    Time().Set(MONDAY, {8, 40, 0});
    QVERIFY(WaitForPasses());
    COMPARE_LINES(Device().Calls(), {VOLUME, VOLUME});
    Time().Set(MONDAY, {9, 0, 10});
    QVERIFY(Device().WaitForCalls(3));
    COMPARE_LINES(Device().Calls(), {VOLUME, VOLUME, u"sound.PlayPlaylist ssusb day  2 09:00:00 false"_s});
    QVERIFY(Daemon().Take(2).join(u'\n').contains(u"IsDelayed but still valid"_s));
}

void ClockJumps::FromBefore2038ToAfter()
{
    WriteSchedule("0100000|03:14:15|*|*|*|20380119|20380119|Volume|1\n");
    Time().Set(QDate(2038, 1, 19), {3, 14, 5});
    QVERIFY(StartDaemon());
    QVERIFY(Device().WaitForCalls(1));
    Time().Set(QDate(2038, 1, 26), {3, 14, 7});
    QVERIFY(WaitForPasses());
    COMPARE_LINES(Device().Calls(), {VOLUME});
}

OZNA_CASE(ClockJumps, ClockJumps)
#include "tst_ClockJumps.moc"

#include "BusTest.h"
#include "Suite.h"

#include <csignal>

using namespace Qt::StringLiterals;

// A process that is stopped, as the whole machine is while it sleeps, and goes on later.
class StandStill : public BusTest
{
    Q_OBJECT
private Q_SLOTS:
    void WhatIsDueMeanwhileIsNotStarted();
};

namespace
{

} // namespace

void StandStill::WhatIsDueMeanwhileIsNotStarted()
{
    WritePlaylist("first.mp3;60\nsecond.mp3;30\nthird.mp3;45\n", u"day"_s);
    WriteSchedule("1111111|08:30:00|*|*|*|||Volume|1\n1111111|08:30:05|*|*|*|||PlayPlaylist|day\n"
                  "1111111|08:31:20|*|*|*|||Volume|2\n");
    Time().Set(MONDAY, {8, 29, 30});
    QVERIFY(StartDaemon());
    Daemon().Signal(SIGSTOP);
    Time().Set(MONDAY, {8, 31, 0});
    Daemon().Signal(SIGCONT);
    QVERIFY(Device().WaitForCalls(1));
    QCOMPARE(Daemon().Take(2).filter(u"IsDelayed but still valid"_s).size(), 1);
    Time().Set(MONDAY, {8, 31, 13});
    QVERIFY(Daemon().WaitForLog(u"4 [Scheduler.cpp] EARLY action found: 5 (Volume)"_s));
    Time().Set(MONDAY, {8, 31, 20});
    QVERIFY(Device().WaitForCalls(2));
    COMPARE_LINES(Device().Calls(),
                  {u"sound.PlayPlaylist ssusb day  2 08:30:05 false"_s, u"sound.SetMasterVolume d 2"_s});
}

OZNA_CASE(StandStill, StandStill)
#include "tst_StandStill.moc"

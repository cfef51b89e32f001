#pragma once

#include "SchedulerTest.h"

// The fixture of the tests in which time passes: every pass runs as the timers would have it.
class PassingTest : public SchedulerTest
{
    Q_OBJECT
protected:
    // Three tracks, of 60, 30 and 45 s: as "day" in schedules. Late starts are tolerated for 94 s.
    void WritePlaylist();

    // Lets that much time pass. The first far pass comes after firstFar_ms, the others every 3 s.
    void Pass(int seconds, int firstFar_ms = 3000);

    // The requests since the last call, each with the local time at which it came: "08:30:00 SetMasterVolume d 1".
    QStringList TakeRequests() { return std::exchange(m_requests, {}); }

    // The sound manager says that the message, or the playlist, has ended.
    static void EndMessage();
    static void EndPlaylist();

    // Loads the schedule. The lines have all days and no dates unless they begin with days: "08:30:00 Volume|1" and
    // "1111100 08:30:00 Volume|1".
    void StartSchedule(const QByteArrayList& lines);

private:
    QStringList m_requests;
};

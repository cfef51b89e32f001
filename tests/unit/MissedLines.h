#pragma once

#include "LogRecorder.h"

// The records of starts that have passed.
namespace MissedLines
{

inline const QByteArray LOADED = "the schedule was loaded less than 3 s before";
inline const QByteArray CLOCK_FORWARD = "the clock was put forward";
inline const QByteArray LOCAL_FORWARD = "the clocks were put forward (summer time or another time zone)";
inline const QByteArray STOOD_STILL = "the process stood still";
inline const QByteArray STILL_RUNS = "it still plays or works from its last start";
inline const QByteArray CANNOT_START = "its time cannot start: the daemon looks ahead within one day only";
inline const QByteArray LUCK = "its time starts by luck only: it comes too soon after midnight";
inline const QByteArray UTC_MIDNIGHT = "its time comes too soon after midnight in UTC, when its spot date begins";

// task: its type and name, "5 (Volume)". due: "08:30:00", with the date in front where it is another day's.
inline LogLine Missed(const QByteArray& task, int line, const QByteArray& due, const QByteArray& cause)
{
    return {"2 [MissedStarts.cpp] MISSED action: " + task + ", line " + QByteArray::number(line) + ", due at " + due +
            ": " + cause};
}

inline LogLine Others(int count, const QByteArray& more = {})
{
    return {"2 [MissedStarts.cpp] MISSED actions: " + QByteArray::number(count) + " others before these" + more};
}

} // namespace MissedLines

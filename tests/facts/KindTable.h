#pragma once

#include <span>

// A kind of task, as the schedule format and the log know it. Written apart from the daemon's own table.
struct KindRow
{
    int number;
    const char* name; // in schedules; empty: a line asks for it by number only
    const char* logName;
    const char* className; // and that of its file in src/tasks; empty: nothing serves the kind
    int fewest;            // parameters
    int most = -1;         // -1: any number
};

// All kinds in the order of their numbers, from 0.
std::span<const KindRow> AllKinds();

// The row of that number.
const KindRow& FindKind(int number);

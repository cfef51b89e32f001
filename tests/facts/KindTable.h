#pragma once

#include <QByteArrayList>
#include <QList>

#include <span>
#include <utility>

// A kind of task, as the schedule format and the log know it. Written apart from the daemon's own table.
struct KindRow
{
    int number;
    const char* name; // in schedules; empty: a line asks for it by number only
    const char* logName;
    const char* className;       // and that of its file in src/tasks; empty: nothing serves the kind
    int fewest;                  // parameters
    int most = -1;               // -1: any number
    const char* words = nullptr; // what ozna-schedule says of the parameter 1; null: a test of its own tells
};

// All kinds in the order of their numbers, from 0.
std::span<const KindRow> AllKinds();

// The row of that number.
const KindRow& FindKind(int number);

// Texts that a parameter is read from, with what is shown of each, and texts that it cannot be read from.
struct ParameterTexts
{
    QList<std::pair<const char*, const char*>> read;
    QByteArrayList unread;
};

// A parameter that a kind reads: {1} in the other texts.
struct Reading
{
    const char* task;
    const char* created;  // behind "TASK CREATED | "
    const char* warning;  // of a text that cannot be read; empty: none
    const char* fallback; // what is shown of that
    const ParameterTexts* texts;
};

// Every parameter that a kind reads as a number, a switch or a name.
const QList<Reading>& AllReadings();

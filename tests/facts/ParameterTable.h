#pragma once

#include <QByteArrayList>
#include <QList>

#include <utility>

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

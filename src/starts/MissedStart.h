#pragma once

#include "Task.h"

#include <QString>

#include <cstdint>

// A start that has passed: the action was due, was not started, and can no longer be.
struct MissedStart
{
    TaskType type;
    QString taskName;   // as log records have it
    int lineNumber;     // of the schedule file
    std::int64_t due_s; // by the clock on the wall, since it showed 1970-01-01 00:00:00
    QString cause;      // for people
};

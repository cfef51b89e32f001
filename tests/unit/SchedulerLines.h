#pragma once

#include "DataFolder.h"
#include "LogRecorder.h"

// What the scheduler logs at level 4 and below when it starts and stops.
namespace SchedulerLines
{

inline const LogLines STOPPED{"4 [Scheduler.cpp] Stopping schedule...", "4 [Scheduler.cpp] Schedule stopped",
                              "4 [Scheduler.cpp] Cleaning up schedule...", "4 [Scheduler.cpp] Scheduler cleaned-up !"};
inline const LogLines RESTARTING{"4 [Scheduler.cpp] Restarting Schedule..."};
inline const LogLines ENABLED{"4 [Scheduler.cpp] Scheduler is enabled"};
inline const LogLines DISABLED{"4 [Scheduler.cpp] Scheduler is disabled"};

// What loading a file logs: one that is missing, and one with a single StopMessage.
inline const LogLines NOT_FOUND{"4 [Scheduler.cpp] No schedules programmed (schedule file not found)"};
inline const LogLines ONE_STOP{"4 [tasks/StopMessage.cpp] TASK CREATED | StopMessage",
                               "4 [Scheduler.cpp] Schedule loaded (1 tasks)"};

// Starting on the file of that name, with what loading it logs.
inline LogLines Started(const DataFolder& data, const QString& name, const LogLines& loading)
{
    const QByteArray path = data.SchedulePath(name).toUtf8();
    return LogLines{"4 [Scheduler.cpp] Starting schedule...",
                    "4 [Scheduler.cpp] Loading schedule from " + path + "..."} +
           loading + LogLines{"4 [Scheduler.cpp] Finding ready actions...", "4 [Scheduler.cpp] Schedule started"};
}

} // namespace SchedulerLines

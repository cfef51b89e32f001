#include "Globals.h"

// Of every program that links the core and is not the daemon. The daemon's main defines all four, so this member of the
// core's archive is not linked there. Without a log client nothing is logged.
QCoreApplication* m_app = nullptr;
LogInterface* _logInterface = nullptr; // NOLINT(readability-identifier-naming)
Scheduler* m_scheduler = nullptr;
SchedulerAdaptor* m_schedulerAdaptor = nullptr;

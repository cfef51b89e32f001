#include "Globals.h"

// The process-wide objects that the daemon's code expects. Without a log client it logs nothing.
QCoreApplication* m_app = nullptr;
LogInterface* _logInterface = nullptr; // NOLINT(readability-identifier-naming)
Scheduler* m_scheduler = nullptr;
SchedulerAdaptor* m_schedulerAdaptor = nullptr;

#include "Globals.h"

// The process-wide objects of a test program. The fixture sets the log client; a test that needs one of the others
// sets it, and takes it back.
QCoreApplication* m_app = nullptr;
LogInterface* _logInterface = nullptr; // NOLINT(readability-identifier-naming)
Scheduler* m_scheduler = nullptr;
SchedulerAdaptor* m_schedulerAdaptor = nullptr;

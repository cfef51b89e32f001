#pragma once

class LogInterface;
class QCoreApplication;
class Scheduler;
class SchedulerAdaptor;

// The process-wide objects. The daemon's main defines and creates them, in this order. m_app and _logInterface live
// until the process ends; m_scheduler is deleted by main and takes m_schedulerAdaptor, its child, with it. Every other
// program that links the core has those of GlobalsUnset.cpp: null until it sets them. Their names are fixed by
// requirement.
extern QCoreApplication* m_app;
extern LogInterface* _logInterface; // NOLINT(readability-identifier-naming)
extern Scheduler* m_scheduler;
extern SchedulerAdaptor* m_schedulerAdaptor;

#pragma once

#include "Scheduler.h"

// A window on what the scheduler keeps to itself: an explicit instantiation may name private members, so the class
// needs no door for tests.
namespace SchedulerAccess
{

QTimer& FarTimer(Scheduler& scheduler);
QTimer& EarlyTimer(Scheduler& scheduler);
ActionList& FarActions(Scheduler& scheduler);
ActionList& EarlyActions(Scheduler& scheduler);

template <PassTimers Scheduler::*TIMERS, ActionList Scheduler::*FAR_LIST, ActionList Scheduler::*EARLY_LIST>
struct Window
{
    friend QTimer& FarTimer(Scheduler& scheduler) { return (scheduler.*TIMERS).m_farTimer; }
    friend QTimer& EarlyTimer(Scheduler& scheduler) { return (scheduler.*TIMERS).m_earlyTimer; }
    friend ActionList& FarActions(Scheduler& scheduler) { return scheduler.*FAR_LIST; }
    friend ActionList& EarlyActions(Scheduler& scheduler) { return scheduler.*EARLY_LIST; }
};

template struct Window<&Scheduler::m_timers, &Scheduler::m_farActions, &Scheduler::m_earlyActions>;

} // namespace SchedulerAccess

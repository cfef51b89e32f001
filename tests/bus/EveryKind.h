#pragma once

#include "BusTest.h"
#include "Lines.h"
#include "Request.h"

// A schedule in which every kind of task is due at 08:30:00, and what it brings. The clock is set to six seconds
// before: one far pass finds all of them early, and a message or playlist that is refused is not asked for again by
// another.
class EveryKind : public BusTest
{
    Q_OBJECT
protected:
    static constexpr int REFUSAL = 7; // any status other than 0
    static constexpr int LEVEL_ALL = 9;

    // Writes the schedule, its playlist and the configuration, and starts the daemon.
    [[nodiscard]] bool StartSchedule();

    // Waits until the last action of the schedule has been started, whatever came of it.
    [[nodiscard]] bool WaitForTheLast();

    // The requests that are sent when all of them have that outcome, in order.
    static QStringList Calls(Outcome outcome);

    // What the tasks log then. error: the bus's message, with %1 for the peer; a status is REFUSAL.
    static QStringList TaskLines(Outcome outcome, const char* error = "");

    // All methods that are called when all is accepted, for SimulatorProcess.
    static QList<QByteArray> Methods();
};

#pragma once

#include "BusTest.h"
#include "Lines.h"

// A schedule in which every kind of task is due at 08:30:00, and what it brings. The clock is set to six seconds
// before: one far pass finds all of them early, and a message or playlist that is refused is not asked for again by
// another.
class EveryKind : public BusTest
{
    Q_OBJECT
protected:
    // Writes the schedule, its playlist and the configuration, and starts the daemon.
    [[nodiscard]] bool StartSchedule();

    // The records up to that level of a pass that starts everything: those of the tasks themselves.
    [[nodiscard]] QStringList TakeTaskLines(unsigned int maxLevel);

    // Waits until the last action of the schedule has been started, whatever came of it.
    [[nodiscard]] bool WaitForTheLast();

    // The requests that are sent when all is accepted, in order.
    static QStringList AcceptedCalls();

    // All methods that are called then, for SimulatorProcess.
    static QList<QByteArray> Methods();
};

#pragma once

#include "FaultTable.h"
#include "Request.h"

#include <QStringList>

// What one day has to bring for a request, with one fault, or on a plain day.
struct Expectation
{
    // fault: null on a plain day. isNextWatched: the next action is in the early list already, missed the day before.
    Expectation(const Request& request, const Fault* fault, bool isNextWatched);

    QStringList schedulerLines; // records of the levels 1, 2 and 4, but those of tasks
    QStringList taskLines;      // those of tasks
    QStringList calls;          // that the peers receive
    QStringList successorCalls; // that the process receives which took the name over
    qsizetype photos;           // how many photos the task sees
    bool isNextMissed;          // the next action is due while the loop is blocked
    int signalsToEnd;           // how many signals of the peer end what the task still waits for
    QStringList endLines;       // and what is logged then

    static const QString NEXT_DONE; // the last record of the next action

private:
    void AddFlood(const Request& request);
    void AddSignalBehind(const Request& request);
    void AddEnd(const Request& request, bool isGone, bool isAccepted);
};

#pragma once

#include "DaemonProcess.h"
#include "Expectation.h"

// The daemon's records on the days of one request, and complaints about what is not as it has to be.
class LaneLog final
{
public:
    // Both outlive this object.
    LaneLog(const Request& request, DaemonProcess& daemon);

    // The fault of the day that begins, for the complaints; null: none.
    void BeginDay(const Fault* fault);

    // Compares the records since the last comparison: on the day of the request, while it waits for its end, and then.
    // The task's records of the day.
    QStringList CompareDay(const Expectation& expected);
    void CompareWaiting();
    void CompareEnd(const QStringList& expected);

    // Complains unless it is so.
    void Need(bool isSo, const char* complaint);
    void Compare(const char* what, const QStringList& found, const QStringList& expected);

    // All that is over: whether each start that passed has its word, and no other has. waits: how many passed while the
    // loop waited for the peer; skipped: how many the clock was put forward over.
    void CompareMissed(qsizetype waits, qsizetype skipped);

    [[nodiscard]] const QStringList& Complaints() const { return m_complaints; }

private:
    // The records since the last call, but those of missed starts: which pass tells them is the timers' business.
    [[nodiscard]] QStringList Take();

    const Request& m_request;
    DaemonProcess& m_daemon;
    const Fault* m_fault = nullptr;
    QStringList m_missed; // the records of starts that have passed
    QStringList m_complaints;
};

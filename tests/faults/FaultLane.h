#pragma once

#include "Expectation.h"
#include "FaultReport.h"
#include "FaultRig.h"
#include "LaneLog.h"
#include "PeerSignal.h"

#include <QDBusPendingCall>

#include <optional>

// One request, tried with one fault a day. The requests of a group are tried side by side, so the steps of a day are
// apart, and each step leaves the lane waiting for the next. What is not as it has to be is collected as a complaint.
class FaultLane final
{
public:
    explicit FaultLane(const Request& request);

    void Start();

    // The steps of a day, in their order. fault: null for a plain day, on which nothing goes wrong.
    void Prepare(const Fault* fault, const QDate& day);
    void Begin();   // waits until the action has been found, then its time has come
    void Provoke(); // waits until it has been started, and has the fault happen where the start alone does not
    void Finish();  // the next action's time has come; compares
    void Settle();  // everything is in order again, and nothing runs any more

    // Ends the daemon, and writes the report.
    void End(int number);

    [[nodiscard]] const QStringList& Complaints() const { return m_log.Complaints(); }

private:
    [[nodiscard]] bool IsFault(FaultKind kind) const { return m_fault && m_fault->kind == kind; }
    // A day of signals for a request whose peer has none that the daemon knows.
    [[nodiscard]] bool IsIdle() const { return m_fault && m_fault->isSignal && !m_signal; }
    void LoseDevice(); // where that is the fault
    [[nodiscard]] bool SendsSignals() const { return m_fault && m_fault->isSignal && !IsFault(FaultKind::ENDS); }
    [[nodiscard]] bool IsDeviceLost() const; // on that day, before the calls are compared
    void TakePhotos();
    void SendFaultySignals();
    void Delete();
    void RunNext();
    void Judge();
    void EndWhatWaits();
    void WaitForLoop();

    const Request m_request;
    const PeerSignal* const m_signal;
    FaultRig m_rig;
    LaneLog m_log;
    FaultReport m_report;
    const Fault* m_fault = nullptr;
    QDate m_day;
    std::optional<Expectation> m_expected;
    bool m_isNextWatched = false;
    int m_waits = 0;            // how many starts passed while the loop waited for the peer
    qint64 m_idleStarts = 0;    // of idle days that are not over
    qint64 m_skippedStarts = 0; // how many the clock was put forward over, on idle days
};

#pragma once

#include "Expectation.h"
#include "FaultReport.h"
#include "FaultRig.h"
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

    [[nodiscard]] const QStringList& Complaints() const { return m_complaints; }

private:
    [[nodiscard]] bool IsFault(FaultKind kind) const { return m_fault && m_fault->kind == kind; }
    [[nodiscard]] bool IsIdle() const; // a day of signals for a request whose peer has none that the daemon knows
    [[nodiscard]] QByteArray Method() const;
    void Script();
    void LosePeer();
    void LoseDevice(); // where that is the fault
    [[nodiscard]] bool SendsSignals() const;
    [[nodiscard]] bool IsDeviceLost() const; // on that day, before the calls are compared
    void TakePhotos();
    void SendFaultySignals();
    void Delete();
    void RunNext();
    void Judge();
    [[nodiscard]] QStringList TakeLog();
    void JudgeMissed();
    void EndWhatWaits();
    void Compare(const char* what, const QStringList& found, const QStringList& expected);
    void Complain(const QString& what);
    [[nodiscard]] bool WaitForLog(const QString& line);

    const Request m_request;
    const QByteArray m_peer;
    const PeerSignal* const m_signal;
    FaultRig m_rig;
    FaultReport m_report;
    const Fault* m_fault = nullptr;
    QDate m_day;
    std::optional<Expectation> m_expected;
    bool m_isNextWatched = false;
    QStringList m_missed;       // the records of starts that have passed
    int m_waits = 0;            // how many starts passed while the loop waited for the peer
    qint64 m_idleStarts = 0;    // of idle days that are not over
    qint64 m_skippedStarts = 0; // how many the clock was put forward over, on idle days
    QStringList m_complaints;
};

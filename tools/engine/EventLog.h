#pragma once

#include "Event.h"
#include "Scheduler.h"
#include "VirtualDevice.h"

#include <vector>

// Turns what the passes of a rehearsal find, and the requests to its peers, into events; passes the requests on to the
// virtual device.
class EventLog final
{
public:
    // now_ms: the rehearsal's clock, at its start; outlives the log.
    explicit EventLog(const qint64& now_ms);

    EventLog(const EventLog&) = delete;
    EventLog& operator=(const EventLog&) = delete;

    // A pass has found that; the requests that follow are those of an action that is ready.
    void OnFound(const Action& action, ActionFinding finding);

    // A far pass tells that a start has passed.
    void OnMissed(const MissedStart& start);

    void Receive(Request request);

    // Requests from now on belong to no action that was found.
    void EndPass();

    // The device sends the signals that are due.
    void PlayDevice();

    // When the next one is due; the greatest number when none is.
    [[nodiscard]] qint64 NextSignal_ms() const { return m_device.Next_ms(); }

    // Drops events that end before from_ms or come from until_ms on, and sorts the others. No request may follow.
    void Finish(qint64 from_ms, qint64 until_ms);

    [[nodiscard]] std::vector<Event>& Events() { return m_events; }
    [[nodiscard]] const std::vector<Event>& Events() const { return m_events; }

private:
    static constexpr size_t NONE = static_cast<size_t>(-1);

    [[nodiscard]] Event NewEvent(const Action& action, EventKind kind) const;
    void MarkStart(Event& event, const Action& action) const;
    template <typename Predicate> const Event* Latest(qint64 since_ms, Predicate predicate) const;

    const qint64& m_now_ms;
    const qint64 m_start_ms;
    std::vector<Event> m_events;
    std::vector<Event> m_missed; // apart from the others, as they come later than their moments
    VirtualDevice m_device;
    const Action* m_running = nullptr; // whose task is run
    size_t m_event = NONE;             // to which requests belong
};

#pragma once

#include "Chances.h"
#include "EventQueue.h"
#include "Scheduler.h"
#include "VirtualDevice.h"

#include <QHash>

#include <array>
#include <functional>
#include <optional>
#include <utility>

// Turns what the passes of a rehearsal find, and the requests to its peers, into events; passes the requests on to the
// virtual device.
class EventLog final
{
public:
    // clock: the rehearsal's, at its start; outlives the log.
    explicit EventLog(RehearsalClock& clock);

    // The scheduler has loaded its schedule now.
    void Load(const Scheduler& scheduler) { m_chances.Load(scheduler); }

    // Called for each event as it comes about, a missed one when that is known: its requests, and the end of what it
    // plays, are still to come.
    using Noted = std::function<void(const Event& event)>;
    void SetNoted(Noted noted) { m_noted = std::move(noted); }

    EventLog(const EventLog&) = delete;
    EventLog& operator=(const EventLog&) = delete;

    // A pass has found that; the requests that follow are those of an action that is ready.
    void OnFound(const Action& action, ActionFinding finding);

    // A far pass tells that a start has passed.
    void OnMissed(const MissedStart& start);

    // A far pass has looked; its early pass is still to come.
    void EndFarPass();

    void Receive(Request request);

    // The event that the request received last belongs to. Asked for right behind Receive.
    [[nodiscard]] const Event& Last() { return m_events[m_event]; }

    // Requests from now on belong to no action that was found.
    void EndPass();

    // The device sends the signals that are due.
    void PlayDevice();

    // When the next one is due; the greatest number when none is.
    [[nodiscard]] qint64 NextSignal_ms() const { return m_device.Next_ms(); }

    // Has those taken that nothing can change any more, and before which none can come: the clock is not put back. Of
    // what comes before from_ms the order does not matter.
    void Release(qint64 from_ms, const EventQueue::Take& take);

    // Has all others taken. No request may follow.
    void Finish(const EventQueue::Take& take);

private:
    static constexpr size_t NONE = static_cast<size_t>(-1);

    // One event of a line.
    struct Outcome
    {
        qint64 moment_ms;
        qint64 due_ms;
        bool isForced;
    };

    // Whose task has asked for the latest series of photos.
    struct Series
    {
        int lineNumber = 0;
        TaskType type = TASK_UNKNOWN;
        QString taskName = {};
    };

    [[nodiscard]] Event NewEvent(const Action& action, EventKind kind) const;
    void MarkStart(Event& event, const Action& action) const;
    [[nodiscard]] std::optional<Outcome> Latest(const Event& event) const;
    [[nodiscard]] size_t Append(Event event);
    void AppendMissed(Event event);

    const qint64& m_now_ms;
    const qint64 m_loaded_ms;
    Chances m_chances;
    EventQueue m_events;
    VirtualDevice m_device;
    Noted m_noted;
    std::array<QHash<int, Outcome>, EVENT_KINDS> m_latest; // of each kind, but missed ones: by their lines
    Series m_series;
    const Action* m_running = nullptr; // whose task is run
    size_t m_event = NONE;             // to which requests belong
};

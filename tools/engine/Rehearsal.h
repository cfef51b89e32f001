#pragma once

#include "EventLog.h"
#include "RehearsalClock.h"
#include "Risks.h"
#include "Scheduler.h"
#include "Stretch.h"
#include "WatchList.h"
#include "Workspace.h"
#include "base/Moment.h"
#include "peers/PeerReply.h"

#include <QObject>
#include <QStringList>

#include <functional>
#include <utility>
#include <vector>

// Runs the daemon's own engine on a virtual clock, with a device that accepts everything, and notes its requests.
// Only one may live; the process's time zone stays the same meanwhile.
class Rehearsal final : public QObject
{
    Q_OBJECT
public:
    // Something that happens to the daemon a given time after its start: the calendar is stepped, or the schedule is
    // loaded again.
    struct Disturbance
    {
        qint64 after_ms;
        qint64 step_ms; // 0: a reload
    };

    // Moments in milliseconds since 1970-01-01 00:00:00 UTC.
    struct Plan
    {
        qint64 start_ms;                            // the daemon loads the schedule
        qint64 from_ms;                             // earlier events are dropped, except what still plays
        qint64 until_ms;                            // the end, exclusive
        bool everyPass = false;                     // run each pass of the timers, also those that can find nothing
        std::vector<Disturbance> disturbances = {}; // in the order of their moments
        QStringList silentPeers = {};               // which never answer, as "soundmanager"
        bool isSettled = false;                     // the load is long ago: what it forces has been started
    };

    // Rehearses the schedule of workspace, which outlives it.
    Rehearsal(const Workspace& workspace, const Plan& plan);
    ~Rehearsal() override;

    // Runs it. Calls goOn now and then with the fraction done, from 0 to 1. If goOn returns false, Run stops, keeps the
    // events before Reached_ms, and returns false. Called once.
    [[nodiscard]] bool Run(const std::function<bool(double)>& goOn = {});

    // Called for each event as it comes about; its requests, and the end of what it plays, are still to come.
    void SetNoted(const EventLog::Noted& noted) { m_log.SetNoted(noted); }

    // Called for each request, from the start on. isByChance: it belongs to a start that comes by chance.
    using Requested = std::function<void(const Request& request, bool isByChance)>;
    void SetRequested(const Requested& requested) { m_requested = requested; }

    // Takes the events, in the order of their moments, as soon as nothing can change them any more. Unless it is set,
    // they are kept.
    void SetTake(const EventQueue::Take& take) { m_take = take; }

    // Up to where it has run: the end of the plan, or where goOn ended it.
    [[nodiscard]] qint64 Reached_ms() const { return m_reached_ms; }

    // Those that are kept, in the order of their moments.
    [[nodiscard]] const std::vector<Event>& Events() const { return m_events; }
    [[nodiscard]] std::vector<Event> TakeEvents() { return std::exchange(m_events, {}); }

    // What the clock on the wall shows at the end.
    [[nodiscard]] QTime End() const { return Moment::LocalTime(End_ms()); }

    // How many of the daemon's passes were run.
    [[nodiscard]] qint64 Passes() const { return m_farPasses + m_earlyPasses; }

private:
    void OnPddAction(uint action, bool enable);
    bool RunEveryPass(Scheduler& scheduler, const std::function<bool(double)>& goOn);
    bool RunStretches(Scheduler& scheduler, const std::function<bool(double)>& goOn);
    bool RunStretch(Scheduler& scheduler, const Stretch& stretch, const std::function<bool(double)>& goOn);
    void Receive(const Request& request)
    {
        m_log.Receive(request);
        if (m_requested)
            m_requested(request, m_log.Last().IsByChance());
    }
    [[nodiscard]] PeerReply Answer(const Request& request);
    [[nodiscard]] qint64 End_ms() const;
    [[nodiscard]] qint64 NextDisturbance_ms() const;
    void Disturb(Scheduler& scheduler);
    [[nodiscard]] double DonePart() const;
    void Pass(Scheduler& scheduler);
    void Decide(Scheduler& scheduler, qint64 end_ms);
    void PlayDeviceBefore(qint64 moment_ms);
    void Release();
    void Take(Event&& event);

    const Workspace::Use m_use;
    const Plan m_plan;
    RehearsalClock m_clock;
    EventLog m_log;
    WatchList m_watches;
    Risks m_risks;
    Requested m_requested;
    EventQueue::Take m_take;
    std::vector<Event> m_events;
    qint64 m_reached_ms;
    size_t m_disturbed = 0; // how many of the disturbances have been
    qint64 m_farPasses = 0;
    qint64 m_earlyPasses = 0;
};

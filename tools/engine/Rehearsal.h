#pragma once

#include "Event.h"
#include "MissedTimes.h"
#include "Scheduler.h"
#include "Stretch.h"
#include "VirtualDevice.h"
#include "WatchList.h"

#include <QObject>

#include <functional>
#include <vector>

// The daemon's own engine on a virtual clock, with a device that accepts everything: what it would ask for, and when.
// Needs a Workspace. Only one may live; the process's time zone stays the same meanwhile.
class Rehearsal final : public QObject
{
    Q_OBJECT
public:
    // Moments in milliseconds since 1970-01-01 00:00:00 UTC.
    struct Plan
    {
        qint64 start_ms;        // the daemon loads the schedule
        qint64 from_ms;         // what comes before it is left out, but for what still plays
        qint64 until_ms;        // the first moment that is no part of it
        bool everyPass = false; // run each pass of the timers, also those that can find nothing
    };

    // When a daemon is started that has been running for long at from_ms: what is switched on once a week is on then.
    // At a midnight, as later on a day it would force what was due before on another one.
    [[nodiscard]] static qint64 LongBefore_ms(qint64 from_ms);

    explicit Rehearsal(const Plan& plan);
    ~Rehearsal() override;

    // Runs it. goOn is called now and then with the part that is done, from 0 to 1; what is there stays when it returns
    // false. False when it was ended so. Called once.
    [[nodiscard]] bool Run(const std::function<bool(double)>& goOn = {});

    // In the order of their moments.
    [[nodiscard]] const std::vector<Event>& Events() const { return m_events; }

    // How many of the daemon's passes were run.
    [[nodiscard]] qint64 Passes() const { return m_passes; }

private:
    static constexpr size_t NONE = static_cast<size_t>(-1);

    void OnFound(const Action& action, ActionFinding finding);
    void OnPddAction(uint action, bool enable);
    void Receive(Request request);
    Event NewEvent(const Action& action, EventKind kind) const;
    void MarkStart(Event& event, const Action& action);
    template <typename Predicate> const Event* Latest(qint64 since_ms, Predicate predicate) const;

    bool RunEveryPass(Scheduler& scheduler, const std::function<bool(double)>& goOn);
    bool RunStretches(Scheduler& scheduler, const std::function<bool(double)>& goOn);
    bool RunStretch(Scheduler& scheduler, const Stretch& stretch, const std::function<bool(double)>& goOn);
    [[nodiscard]] double DonePart() const;
    void Pass(Scheduler& scheduler);
    void PlayDevice();
    void PlayDeviceBefore(qint64 moment_ms);
    void Finish();
    void MarkRisks();

    const Plan m_plan;
    qint64 m_now_ms;
    std::vector<Event> m_events;
    VirtualDevice m_device;
    WatchList m_watches;
    MissedTimes m_missed;
    const Action* m_running = nullptr; // whose task is run
    size_t m_event = NONE;             // to which requests belong
    qint64 m_passes = 0;
};

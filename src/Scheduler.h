#pragma once

#include "ActionList.h"
#include "MissedStarts.h"
#include "PassTimers.h"
#include "Task.h"
#include "peers/PeerProxies.h"
#include "peers/WaitingUpdates.h"
#include "starts/ScheduleIndex.h"

#include <QObject>
#include <QString>

#include <cstdint>

// What a pass finds out about an action.
enum class ActionFinding : std::uint8_t
{
    SKIPPED, // a playlist whose stop is so near that it is not started
    READY,   // it is started now: the requests that follow are its own
    LOST,    // it can no longer be prepared
};

// The engine: owns the actions of the schedule file and the two timers that pick the ones to start.
// Everything runs on the event-loop thread. The slots with a result are the bus's; it is the status 0, always.
// Once the process is to end (see StopRequest), nothing is loaded and no action is started any more.
// The shared proxies of PeerProxies are its static members.
class Scheduler final : public QObject, public PeerProxies
{
    Q_OBJECT
public:
    // The periods of the two timers.
    static constexpr int FAR_INTERVAL_MS = PassTimers::FAR_INTERVAL_MS;
    static constexpr int EARLY_INTERVAL_MS = PassTimers::EARLY_INTERVAL_MS;

    // Creates the shared proxies, without contacting their services; enabled, but nothing runs before Run or Start.
    // fileName: the schedule file in the schedule folder. Throws a standard exception when a proxy cannot be created.
    explicit Scheduler(const QString& fileName);

    // Stops the schedule.
    ~Scheduler() override;

    // Starts the schedule when enabled.
    void Run();

    // Loads the schedule file, forces the light and radio state that should be in force, and starts the timers.
    void Start();

    // Stops the timers and deletes all actions; a task that is playing stops its source.
    void Stop();

    // The actions by their start times. Every action is in one of the two lists.
    const StartIndex& Starts() const { return m_index.m_starts; }
    const ActionList& FarActions() const { return m_farActions; }
    const ActionList& EarlyActions() const { return m_earlyActions; }

    // The folder of the schedule files, without a trailing separator.
    static QString GetSchedulePath();

Q_SIGNALS:
    void SchedulingEnabled(bool enabled, const QString& filename);
    void ExpectedPddAction(uint actionId, bool enable);

    // For observers in this process; not sent to the bus.
    void Found(const Action& action, ActionFinding finding);
    void Missed(const MissedStart& start);

public Q_SLOTS:
    int IsEnabled(bool& enabled, QString& filename);

    // Starts or stops the schedule where that changes anything; announces the resulting state in every case.
    int SetEnabled(bool enabled);

    // Takes the name as it stands, loads the file at once when enabled, and at the next enabling otherwise.
    int SetScheduleFile(const QString& filename);

    // Loads the schedule file anew; does nothing while disabled.
    int Reload();

    // Announces the action on the bus, whatever it is.
    void OnPddActionRequested(PDD_ACTION action, bool enable);

    // The timers call these, the far pass first if both are due; a rehearsal with its own clock calls them too.
    void CheckFarActions();
    void CheckEarlyActions();

private Q_SLOTS:
    // Loads an installed schedule file (type 2, status 0), enabling the scheduler where needed; ignores all else.
    // One load covers all announcements that were waiting when it began.
    void OnFilesUpdated(int Status, int FileType);

private:
    // What every bus method answers: failures show in the log, never in the status.
    static constexpr int STATUS_OK = 0;

    void Begin(const Clock::Reading& since);
    void LoadSchedule(const QString& fileName);
    void FindReadyActions();
    void CleanUp();
    bool IsVirtuallyStopped(const Action& play) const;

    QString m_scheduleFile;
    bool m_enabled = false;
    ActionList m_farActions;         // every loaded action that is not in the other list
    ActionList m_earlyActions{true}; // found early, watched closely
    ScheduleIndex m_index;           // of the actions of both lists
    MissedStarts m_missed{m_index.m_starts};
    PassTimers m_timers;
    WaitingUpdates m_updates;
};

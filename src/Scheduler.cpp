#include "Scheduler.h"

#include "Action.h"
#include "Clock.h"
#include "DataRoot.h"
#include "Log.h"
#include "ScheduleLoader.h"
#include "peers/LastCalls.h"
#include "peers/Peers.h"
#include "peers/UpdateManager.h"
#include "process/StopRequest.h"

#include <UpdateManagerProxy.h>

#include <malloc.h>
#include <stdexcept>

namespace
{

constexpr int STOPPED_SOON_S = 10; // a playlist whose stop is nearer than this is not worth starting

const QString LOG_TIME_FORMAT = QStringLiteral("HH:mm:ss");

} // namespace

Scheduler::Scheduler(const QString& fileName)
    : m_scheduleFile(fileName)
{
    Peers::CreateProxies([this] {
        if (!connect(UpdateManager::Signals(), &UpdateManagerProxy::FilesUpdated, this, &Scheduler::OnFilesUpdated))
            throw std::runtime_error("update-manager link");
    });
    m_timers.SetUp(
        {[this] { CheckFarActions(); }, [this] { CheckEarlyActions(); }, [this] { return m_earlyActions.Size() > 0; }});
    m_enabled = true;
}

Scheduler::~Scheduler()
{
    Stop();
}

void Scheduler::Run()
{
    if (m_enabled)
        Start();
    else
        OZNA_LOG(LEVEL_NORMAL, "Scheduler is disabled");
}

void Scheduler::Start()
{
    Begin(Clock::Read());
}

// since: missed starts up to then belong to the schedule that was loaded before, if any.
void Scheduler::Begin(const Clock::Reading& since)
{
    OZNA_LOG(LEVEL_NORMAL, "Starting schedule...");
    LoadSchedule(m_scheduleFile);
    if (StopRequest::IsMade())
        return;
    FindReadyActions();
    m_index.Build(m_farActions);
    m_missed.Load(since);
    m_timers.Start();
    OZNA_LOG(LEVEL_NORMAL, "Schedule started");
}

void Scheduler::LoadSchedule(const QString& fileName)
{
    const auto link = [this](const Action& action) {
        return static_cast<bool>(connect(&action, &Action::PddActionRequested, this, &Scheduler::OnPddActionRequested));
    };
    ScheduleLoader(m_farActions, link, OZNA_LOG_SITE).Load(GetSchedulePath() + QLatin1Char('/') + fileName);
}

void Scheduler::FindReadyActions()
{
    ScheduleLoader(m_farActions, {}, OZNA_LOG_SITE).ForceWhatIsInForce();
}

void Scheduler::Stop()
{
    OZNA_LOG(LEVEL_NORMAL, "Stopping schedule...");
    m_updates.Uncover();
    m_timers.Stop();
    m_missed.Stop();
    OZNA_LOG(LEVEL_NORMAL, "Schedule stopped");
    CleanUp();
}

void Scheduler::CleanUp()
{
    OZNA_LOG(LEVEL_NORMAL, "Cleaning up schedule...");
    const LastCalls lastCalls;
    m_index.Clear();
    m_farActions.Clear();
    m_earlyActions.Clear();
    // What a long schedule took goes back to the device, which has other uses for it.
    static_cast<void>(::malloc_trim(0));
    OZNA_LOG(LEVEL_NORMAL, "Scheduler cleaned-up !");
}

QString Scheduler::GetSchedulePath()
{
    return DataRoot() + QStringLiteral("/schedule");
}

int Scheduler::IsEnabled(bool& enabled, QString& filename)
{
    enabled = m_enabled;
    filename = m_scheduleFile;
    return STATUS_OK;
}

int Scheduler::SetEnabled(bool enabled)
{
    OZNA_LOG(LEVEL_NORMAL, "Scheduler is %s", m_enabled ? "enabled" : "disabled");
    if (!m_enabled && enabled && !StopRequest::IsMade())
    {
        m_enabled = true;
        Start();
        OZNA_LOG(LEVEL_NORMAL, "Scheduling enabled (%s)", qPrintable(m_scheduleFile));
    }
    else if (m_enabled && !enabled)
    {
        m_enabled = false;
        Stop();
        OZNA_LOG(LEVEL_NORMAL, "Scheduling disabled");
    }
    Q_EMIT SchedulingEnabled(m_enabled, m_scheduleFile);
    return STATUS_OK;
}

int Scheduler::SetScheduleFile(const QString& filename)
{
    OZNA_LOG(LEVEL_NORMAL, "Schedule file set to %s", qPrintable(filename.left(Log::RECORD_SIZE)));
    m_scheduleFile = filename;
    return Reload();
}

int Scheduler::Reload()
{
    if (!m_enabled || StopRequest::IsMade())
        return STATUS_OK;
    OZNA_LOG(LEVEL_NORMAL, "Restarting Schedule...");
    const Clock::Reading now = m_missed.Restart();
    Stop();
    Begin(now);
    return STATUS_OK;
}

void Scheduler::OnPddActionRequested(PDD_ACTION action, bool enable)
{
    OZNA_LOG(LEVEL_NORMAL, ">>> Requesting PDD Action: action=%s, enable=%d", PddActionName(action), enable);
    Q_EMIT ExpectedPddAction(static_cast<uint>(action), enable);
}

void Scheduler::OnFilesUpdated(int Status, int FileType)
{
    if (!WaitingUpdates::IsOfSchedule(Status, FileType) || StopRequest::IsMade())
        return;
    OZNA_LOG(LEVEL_NORMAL, "Schedule file updated");
    if (m_updates.IsCovered())
        return;
    const int mark = m_updates.Mark();
    if (!m_enabled)
        OZNA_LOG(LEVEL_WARNING, "Scheduler is disabled: automatically re-enable it");
    static_cast<void>(m_enabled ? Reload() : SetEnabled(true));
    m_updates.Cover(mark);
}

void Scheduler::CheckFarActions()
{
    OZNA_LOG(LEVEL_TRACE, "Checking far actions");
    OZNA_LOG(LEVEL_TRACE, "----------------------------");
    OZNA_LOG(LEVEL_TRACE, "> FarActions:     %d", m_farActions.Size());
    OZNA_LOG(LEVEL_TRACE, "> EarlyActions:   %d", m_earlyActions.Size());
    OZNA_LOG(LEVEL_TRACE, "> TOTAL ACTIONS:  %d", m_farActions.Size() + m_earlyActions.Size());
    OZNA_LOG(LEVEL_TRACE, "----------------------------");

    const Clock::Reading now = Clock::Read();
    for (const MissedStart& start : m_missed.Look(now))
        Q_EMIT Missed(start);

    ActionList::Noted early;
    for (const auto& entry : m_index.m_candidates.At(now, m_farActions))
    {
        Action& action = **entry;
        if (!action.IsEarly())
            continue;
        Task& task = *action.m_task;
        if (IsVirtuallyStopped(action))
        {
            OZNA_LOG(LEVEL_WARNING, "VIRTUALLY STOPPED action found: %d (%s, %s), SKIPPED and marked COMPLETED",
                     task.m_type, qPrintable(task.GetName()), qPrintable(task.m_identifier));
            task.SetCompleted(true);
            MissedStarts::Answer(action, !action.IsAhead());
            Q_EMIT Found(action, ActionFinding::SKIPPED);
            continue;
        }
        OZNA_LOG(LEVEL_NORMAL, "EARLY action found: %d (%s)", task.m_type, qPrintable(task.GetName()));
        early.push_back(entry);
    }
    m_farActions.MoveTo(m_earlyActions, early);
}

bool Scheduler::IsVirtuallyStopped(const Action& play) const
{
    if (play.m_task->m_type != TASK_PLAY_PLAYLIST)
        return false;
    const QTime soon = Clock::TimeOfDay().addSecs(STOPPED_SOON_S);
    const Action* const stop = m_index.m_stops.FirstOf(play, soon);
    if (stop == nullptr)
        return false;
    OZNA_LOG(LEVEL_WARNING, "TASK_STOP_PLAYLIST: %s | NOW+10s: %s",
             qPrintable(stop->m_startTime.toString(LOG_TIME_FORMAT)), qPrintable(soon.toString(LOG_TIME_FORMAT)));
    return true;
}

void Scheduler::CheckEarlyActions()
{
    ActionList::Noted started;
    ActionList::Noted lost;
    for (auto entry = m_earlyActions.begin(); entry != m_earlyActions.end() && !StopRequest::IsMade(); ++entry)
    {
        Action& action = **entry;
        const Task& task = *action.m_task;
        if (action.IsReady())
        {
            OZNA_LOG(LEVEL_NORMAL, "READY action found: %d (%s)", task.m_type, qPrintable(task.GetName()));
            MissedStarts::Answer(action, action.IsBehind());
            Q_EMIT Found(action, ActionFinding::READY);
            action.Start();
            started.push_back(entry);
        }
        else if (action.IsLost())
        {
            OZNA_LOG(LEVEL_NORMAL, "LOST action found: %d (%s)", task.m_type, qPrintable(task.GetName()));
            MissedStarts::Answer(action, false);
            Q_EMIT Found(action, ActionFinding::LOST);
            lost.push_back(entry);
        }
    }
    m_earlyActions.MoveTo(m_farActions, started);
    m_earlyActions.MoveTo(m_farActions, lost);
}

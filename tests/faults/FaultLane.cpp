#include "FaultLane.h"

#include "FaultScript.h"
#include "Lines.h"
#include "Wait.h"

#include <csignal>
#include <utility>

using namespace Qt::StringLiterals;

namespace
{

// The action under test is due at the first of these; the next one is due some seconds later, and far enough away for
// both to be found at once.
const QTime TIME_TO_FIND(8, 29, 53);
const QTime TIME(8, 30, 0);
const QTime NEXT_TIME(8, 30, 5);
constexpr const char* LINE_BEGIN = "1111111|08:30:00|*|*|*|||";
constexpr const char* NEXT_LINE = "1111111|08:30:05|*|*|*|||19|1,1\n";

constexpr int STRANGERS = 3;
constexpr int STARTS_A_DAY = 2;

QByteArray Schedule(const Request& request)
{
    return LINE_BEGIN + request.Schedule().toLatin1() + '\n' + NEXT_LINE;
}

} // namespace

FaultLane::FaultLane(const Request& request)
    : m_request(request)
    , m_signal(FindSignal(request))
    , m_rig(Schedule(request))
    , m_log(m_request, m_rig.Daemon())
    , m_report(request)
{
}

void FaultLane::Start()
{
    m_log.Need(m_rig.Start(), "the daemon does not start");
    static_cast<void>(m_rig.Daemon().Take());
}

void FaultLane::Prepare(const Fault* fault, const QDate& day)
{
    m_fault = fault;
    m_day = day;
    if (IsIdle())
    {
        m_idleStarts += STARTS_A_DAY;
        return;
    }
    m_skippedStarts += std::exchange(m_idleStarts, 0);
    m_expected.emplace(m_request, fault, m_isNextWatched);
    static_cast<void>(m_rig.Client().TakeSignals());
    m_rig.Device().Forget();
    m_rig.Second().Forget();
    if (fault)
        FaultScript::Prepare(*fault, m_request, m_signal, m_rig);
    m_log.BeginDay(fault);
    m_rig.SetTime(day, TIME_TO_FIND);
}

bool FaultLane::IsDeviceLost() const
{
    return IsFault(FaultKind::EXIT) || IsFault(FaultKind::EMPTY_STRUCTURE) || IsFault(FaultKind::DIES) ||
           IsFault(FaultKind::RESTARTS);
}

void FaultLane::Begin()
{
    if (IsIdle())
        return;
    // That it is found tells, too, that nothing of the day before is still running.
    m_log.Need(m_rig.Daemon().WaitForLog(m_expected->schedulerLines.first()), "not found again");
    m_rig.SetTime(m_day, TIME);
}

void FaultLane::Provoke()
{
    if (IsIdle())
        return;
    m_log.Need(m_rig.Daemon().WaitForLog(u"4 [Scheduler.cpp] READY action found: "_s + m_request.Type()),
               "not started");
    if (m_request.Row().trigger == Trigger::PHOTO)
        TakePhotos();
    else if (m_request.Row().trigger == Trigger::DELETION)
        Delete();
    else if (SendsSignals())
    {
        WaitForLoop();
        SendFaultySignals();
    }
    if (IsFault(FaultKind::DIES) || IsFault(FaultKind::RESTARTS))
        LoseDevice();
}

void FaultLane::LoseDevice()
{
    WaitForLoop();
    m_log.Compare("the calls", m_rig.Device().Calls(), m_expected->calls);
    if (IsFault(FaultKind::RESTARTS))
        m_rig.ReplaceDevice();
    else
        m_rig.LoseDevice();
}

void FaultLane::TakePhotos()
{
    WaitForLoop();
    if (SendsSignals())
        SendFaultySignals();
    if (IsFault(FaultKind::FLOOD))
        return;
    // The daemon stands still until the peer has gone, with the photos on their way.
    if (IsFault(FaultKind::ABSENT))
        m_rig.Daemon().Signal(SIGSTOP);
    // The last one comes by itself where the peer sends it behind its answer.
    const qsizetype sent = m_expected->photos - (IsFault(FaultKind::ENDS) ? 1 : 0);
    m_rig.Device().Emit(m_signal->name, m_signal->values, static_cast<int>(sent));
    if (!IsFault(FaultKind::ABSENT))
        return;
    FaultScript::LosePeer(m_request, m_rig);
    m_rig.Daemon().Signal(SIGCONT);
}

void FaultLane::SendFaultySignals()
{
    if (IsFault(FaultKind::FLOOD))
    {
        const bool isNextDue = m_request.Row().trigger != Trigger::DELETION;
        if (isNextDue)
            m_rig.AdvanceTo(m_day, NEXT_TIME);
        const QDBusPendingCall flood = m_rig.Device().EmitMeanwhile(m_signal->name, m_signal->values, FLOOD_SIZE);
        if (isNextDue)
            RunNext();
        m_log.Need(WaitUntil([&] { return flood.isFinished(); }) && !flood.isError(), "no flood");
    }
    else if (IsFault(FaultKind::STRANGER))
        m_rig.Second().Emit(m_signal->name, m_signal->values, STRANGERS);
    else
    {
        for (const QVariantList& values : m_signal->wrong)
            m_rig.Device().Emit(m_signal->name, values);
    }
}

// A schedule that is loaded again deletes what plays.
void FaultLane::Delete()
{
    RunNext();
    if (IsFault(FaultKind::ABSENT))
        FaultScript::LosePeer(m_request, m_rig);
    const QDBusPendingCall reload = m_rig.Bus().Connection().asyncCall(QDBusMessage::createMethodCall(
        SchedulerClient::SERVICE, SchedulerClient::PATH, SchedulerClient::INTERFACE, u"Reload"_s));
    if (SendsSignals())
    {
        m_log.Need(m_rig.Device().WaitForCalls(m_expected->calls.size()), "no stop is asked for");
        SendFaultySignals();
    }
    m_log.Need(WaitUntil([&] { return reload.isFinished(); }) && !reload.isError(), "the schedule is not loaded again");
}

void FaultLane::RunNext()
{
    m_rig.AdvanceTo(m_day, NEXT_TIME);
    // In time, or never: the daemon lets an action be late for two seconds.
    m_log.Need(m_rig.Daemon().WaitForLog(Expectation::NEXT_DONE), "the next action does not run");
}

void FaultLane::Finish()
{
    if (IsIdle())
    {
        m_report.AddIdle(*m_fault);
        return;
    }
    WaitForLoop();
    if (!m_expected->isNextMissed && m_request.Row().trigger != Trigger::DELETION && !IsFault(FaultKind::FLOOD))
        RunNext();
    WaitForLoop();
    Judge();
}

void FaultLane::Judge()
{
    const QStringList taskLines = m_log.CompareDay(*m_expected);
    if (m_expected->isNextMissed)
        m_log.Compare("the signals of the action that is missed", m_rig.Client().TakeSignals(), {});
    else
        m_log.Compare("the next action's signals", m_rig.Client().WaitForSignals(1), {u"ExpectedPddAction(1,true)"_s});
    // A device that is gone cannot tell.
    if (!IsDeviceLost())
        m_log.Compare("the calls", m_rig.Device().Calls(), m_expected->calls);
    m_log.Compare("the successor's calls", m_rig.Second().Calls(), m_expected->successorCalls);
    m_isNextWatched = m_expected->isNextMissed;
    m_waits += m_isNextWatched ? 1 : 0;
    if (m_fault)
        m_report.Add(*m_fault, *m_expected, taskLines);
}

void FaultLane::Settle()
{
    if (IsIdle())
        return;
    if (IsDeviceLost() && !IsFault(FaultKind::RESTARTS))
        m_rig.ReplaceDevice();
    else if (IsFault(FaultKind::ABSENT))
        m_rig.Device().SetPresent(m_request.Peer().toLatin1(), true);
    EndWhatWaits();
    if (!IsFault(FaultKind::TAKEN_OVER))
        return;
    m_rig.Second().SetPresent(m_request.Peer().toLatin1(), false);
    m_rig.Device().SetPresent(m_request.Peer().toLatin1(), true);
}

void FaultLane::EndWhatWaits()
{
    if (m_expected->signalsToEnd == 0)
        return;
    // The first process has lost the name: the daemon ignores its signals.
    if (IsFault(FaultKind::TAKEN_OVER))
        m_rig.Device().Emit(m_signal->name, m_signal->values, m_expected->signalsToEnd);
    WaitForLoop();
    m_log.CompareWaiting();
    SimulatorProcess& owner = IsFault(FaultKind::TAKEN_OVER) ? m_rig.Second() : m_rig.Device();
    owner.Emit(m_signal->name, m_signal->values, m_expected->signalsToEnd);
    WaitForLoop();
    m_log.CompareEnd(m_expected->endLines);
}

void FaultLane::End(int number)
{
    m_log.CompareMissed(m_waits, m_skippedStarts);
    m_rig.Daemon().Signal(SIGTERM);
    m_log.Need(m_rig.Daemon().WaitForExit() == 0, "the daemon does not end with 0");
    m_log.Compare("the last records", m_rig.Daemon().Take(static_cast<unsigned int>(SHOWN_LEVEL)), Lines::Ended());
    m_report.Write(number);
}

void FaultLane::WaitForLoop()
{
    m_log.Need(m_rig.WaitForLoop(), "the loop does not go on");
}

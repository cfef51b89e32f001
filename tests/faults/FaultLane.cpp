#include "FaultLane.h"

#include "Lines.h"
#include "TextDiff.h"
#include "Wait.h"

#include <csignal>
#include <utility>

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
constexpr int HELD_BACK_MS = 500; // an answer, while signals come
constexpr int WARNING_LEVEL = 2;
constexpr int STARTS_A_DAY = 2;

const QString PHOTO_SEEN = QStringLiteral("9 [tasks/Photo.cpp] >>> Photo taken");

QByteArray Schedule(const Request& request)
{
    return LINE_BEGIN + request.Schedule().toLatin1() + '\n' + NEXT_LINE;
}

bool IsTaskLine(const QString& line)
{
    return line.contains(QStringLiteral("[tasks/")) || line.contains(QStringLiteral("[Task.cpp]"));
}

// The records of the levels that the matrix states, without those of a schedule that is loaded again.
QStringList Relevant(const QStringList& lines)
{
    const qsizetype cleaned = lines.indexOf(Lines::CLEANED.first());
    QStringList shown;
    for (qsizetype i = 0; i < lines.size(); ++i)
    {
        const int level = lines[i].front().digitValue();
        const bool isLoading = cleaned >= 0 && i > cleaned && level > WARNING_LEVEL;
        if (level <= SHOWN_LEVEL && !isLoading)
            shown.append(lines[i]);
    }
    return shown;
}

} // namespace

FaultLane::FaultLane(const Request& request)
    : m_request(request)
    , m_peer(request.Peer().toLatin1())
    , m_signal(FindSignal(request))
    , m_rig(Schedule(request))
    , m_report(request)
{
}

void FaultLane::Start()
{
    if (!m_rig.Start())
        Complain(QStringLiteral("the daemon does not start"));
    static_cast<void>(m_rig.Daemon().Take());
}

bool FaultLane::IsIdle() const
{
    return m_fault && m_fault->isSignal && !m_signal;
}

QByteArray FaultLane::Method() const
{
    return m_request.Method().toLatin1();
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
    Script();
    static_cast<void>(TakeLog());
    m_rig.SetTime(day, TIME_TO_FIND);
}

void FaultLane::Script()
{
    if (!m_fault)
        return;
    const QByteArray method = Method();
    SimulatorProcess& device = m_rig.Device();
    switch (m_fault->kind)
    {
    case FaultKind::ABSENT:
        if (m_request.Row().trigger == Trigger::START)
            LosePeer();
        break;
    case FaultKind::BUS_ERROR: device.AnswerError(method, m_fault->error, 1); break;
    case FaultKind::REFUSED: device.AnswerStatus(method, REFUSAL, 0, 1); break;
    case FaultKind::WRONG_TYPE: device.AnswerValues(method, {QStringLiteral("ok")}, 0, 1); break;
    case FaultKind::NO_VALUES: device.AnswerValues(method, {}, 0, 1); break;
    case FaultKind::EXTRA_VALUES: device.AnswerValues(method, {0, REFUSAL, QStringLiteral("more")}, 0, 1); break;
    case FaultKind::EMPTY_STRUCTURE: device.AnswerBroken(method); break;
    case FaultKind::EXIT: device.AnswerByExit(method); break;
    case FaultKind::TAKEN_OVER:
        m_rig.Second().StandBy(m_peer.constData());
        device.AnswerAndLeave(method, 0);
        break;
    case FaultKind::DIES:
    case FaultKind::RESTARTS: break;
    case FaultKind::ENDS: device.AnswerThenEmit(method, m_signal->name, m_signal->values); break;
    case FaultKind::FLOOD:
    case FaultKind::WRONG_SIGNALS:
    case FaultKind::STRANGER:
        if (m_request.Row().trigger == Trigger::DELETION)
            device.AnswerStatus(method, 0, HELD_BACK_MS, 1);
        break;
    case FaultKind::LATE: device.AnswerLate(method, REFUSAL); break;
    }
}

bool FaultLane::SendsSignals() const
{
    return m_fault && m_fault->isSignal && !IsFault(FaultKind::ENDS);
}

bool FaultLane::IsDeviceLost() const
{
    return IsFault(FaultKind::EXIT) || IsFault(FaultKind::EMPTY_STRUCTURE) || IsFault(FaultKind::DIES) ||
           IsFault(FaultKind::RESTARTS);
}

// Where another request comes first, the peer goes away with its answer.
void FaultLane::LosePeer()
{
    const QList<Request> before = m_request.Before();
    if (m_request.Row().trigger == Trigger::START && !before.isEmpty())
        m_rig.Device().AnswerAndLeave(before.first().Method().toLatin1(), 0);
    else
        m_rig.Device().SetPresent(m_peer.constData(), false);
}

void FaultLane::Begin()
{
    if (IsIdle())
        return;
    // That it is found tells, too, that nothing of the day before is still running.
    if (!WaitForLog(m_expected->schedulerLines.first()))
        Complain(QStringLiteral("not found again"));
    m_rig.SetTime(m_day, TIME);
}

void FaultLane::Provoke()
{
    if (IsIdle())
        return;
    if (!WaitForLog(QStringLiteral("4 [Scheduler.cpp] READY action found: ") + m_request.Type()))
        Complain(QStringLiteral("not started"));
    if (m_request.Row().trigger == Trigger::PHOTO)
        TakePhotos();
    else if (m_request.Row().trigger == Trigger::DELETION)
        Delete();
    else if (SendsSignals())
    {
        if (!m_rig.WaitForLoop())
            Complain(QStringLiteral("the loop does not go on"));
        SendFaultySignals();
    }
    if (IsFault(FaultKind::DIES) || IsFault(FaultKind::RESTARTS))
        LoseDevice();
}

void FaultLane::LoseDevice()
{
    if (!m_rig.WaitForLoop())
        Complain(QStringLiteral("the loop does not go on"));
    Compare("the calls", m_rig.Device().Calls(), m_expected->calls);
    if (IsFault(FaultKind::RESTARTS))
        m_rig.ReplaceDevice();
    else
        m_rig.LoseDevice();
}

void FaultLane::TakePhotos()
{
    if (!m_rig.WaitForLoop())
        Complain(QStringLiteral("the loop does not go on"));
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
    LosePeer();
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
        if (!WaitUntil([&] { return flood.isFinished(); }) || flood.isError())
            Complain(QStringLiteral("no flood"));
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
        LosePeer();
    const QDBusPendingCall reload = m_rig.Bus().Connection().asyncCall(QDBusMessage::createMethodCall(
        SchedulerClient::SERVICE, SchedulerClient::PATH, SchedulerClient::INTERFACE, QStringLiteral("Reload")));
    if (SendsSignals())
    {
        if (!m_rig.Device().WaitForCalls(m_expected->calls.size()))
            Complain(QStringLiteral("no stop is asked for"));
        SendFaultySignals();
    }
    if (!WaitUntil([&] { return reload.isFinished(); }) || reload.isError())
        Complain(QStringLiteral("the schedule is not loaded again"));
}

void FaultLane::RunNext()
{
    m_rig.AdvanceTo(m_day, NEXT_TIME);
    // In time, or never: the daemon lets an action be late for two seconds.
    if (!WaitForLog(Expectation::NEXT_DONE))
        Complain(QStringLiteral("the next action does not run"));
}

void FaultLane::Finish()
{
    if (IsIdle())
    {
        m_report.AddIdle(*m_fault);
        return;
    }
    if (!m_rig.WaitForLoop())
        Complain(QStringLiteral("the loop does not go on"));
    if (!m_expected->isNextMissed && m_request.Row().trigger != Trigger::DELETION && !IsFault(FaultKind::FLOOD))
        RunNext();
    if (!m_rig.WaitForLoop())
        Complain(QStringLiteral("the loop does not go on"));
    Judge();
}

void FaultLane::Judge()
{
    const QStringList lines = TakeLog();
    QStringList schedulerLines = Relevant(lines);
    QStringList taskLines;
    std::ranges::copy_if(schedulerLines, std::back_inserter(taskLines), IsTaskLine);
    schedulerLines.removeIf(IsTaskLine);
    Compare("the scheduler's records", schedulerLines, m_expected->schedulerLines);
    Compare("the task's records", taskLines, m_expected->taskLines);
    const qsizetype photos = lines.count(PHOTO_SEEN);
    if (photos != m_expected->photos)
        Complain(QStringLiteral("%1 photos seen instead of %2").arg(photos).arg(m_expected->photos));
    if (m_expected->isNextMissed)
        Compare("the signals of the action that is missed", m_rig.Client().TakeSignals(), {});
    else
        Compare("the next action's signals", m_rig.Client().WaitForSignals(1),
                {QStringLiteral("ExpectedPddAction(1,true)")});
    // A device that is gone cannot tell.
    if (!IsDeviceLost())
        Compare("the calls", m_rig.Device().Calls(), m_expected->calls);
    Compare("the successor's calls", m_rig.Second().Calls(), m_expected->successorCalls);
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
        m_rig.Device().SetPresent(m_peer.constData(), true);
    EndWhatWaits();
    if (!IsFault(FaultKind::TAKEN_OVER))
        return;
    m_rig.Second().SetPresent(m_peer.constData(), false);
    m_rig.Device().SetPresent(m_peer.constData(), true);
}

void FaultLane::EndWhatWaits()
{
    if (m_expected->signalsToEnd == 0)
        return;
    // What the first process still signals is a stranger's.
    if (IsFault(FaultKind::TAKEN_OVER))
        m_rig.Device().Emit(m_signal->name, m_signal->values, m_expected->signalsToEnd);
    if (!m_rig.WaitForLoop())
        Complain(QStringLiteral("the loop does not go on"));
    const QStringList lines = TakeLog();
    Compare("the records afterwards", Relevant(lines), {});
    if (lines.contains(PHOTO_SEEN))
        Complain(QStringLiteral("a stranger's photo is seen"));
    SimulatorProcess& owner = IsFault(FaultKind::TAKEN_OVER) ? m_rig.Second() : m_rig.Device();
    owner.Emit(m_signal->name, m_signal->values, m_expected->signalsToEnd);
    if (!m_rig.WaitForLoop())
        Complain(QStringLiteral("the loop does not go on"));
    Compare("the records of the end", Relevant(TakeLog()), m_expected->endLines);
}

// The records since the last call, but those of missed starts: which pass tells them is the timers' business.
QStringList FaultLane::TakeLog()
{
    QStringList lines = m_rig.Daemon().Take();
    const auto isMissed = [](const QString& line) { return line.contains(QStringLiteral("] MISSED action: ")); };
    std::ranges::copy_if(lines, std::back_inserter(m_missed), isMissed);
    lines.removeIf(isMissed);
    return lines;
}

// Each start that passed has its word, and no other has.
void FaultLane::JudgeMissed()
{
    const QString waited = QStringLiteral("the loop waited for com.kestrelix.ozna.");
    QStringList causes;
    for (const QString& line : m_missed)
        causes.append(line.contains(waited) ? waited : line.section(QStringLiteral(": "), -1));
    QStringList expected(m_waits, waited);
    expected += QStringList(m_skippedStarts, QStringLiteral("the clock was put forward"));
    causes.sort();
    expected.sort();
    Compare("the missed starts", causes, expected);
}

void FaultLane::End(int number)
{
    static_cast<void>(TakeLog());
    JudgeMissed();
    m_rig.Daemon().Signal(SIGTERM);
    if (m_rig.Daemon().WaitForExit() != 0)
        Complain(QStringLiteral("the daemon does not end with 0"));
    Compare("the last records", m_rig.Daemon().Take(static_cast<unsigned int>(SHOWN_LEVEL)), Lines::Ended());
    m_report.Write(number);
}

bool FaultLane::WaitForLog(const QString& line)
{
    return m_rig.Daemon().WaitForLog(line);
}

void FaultLane::Compare(const char* what, const QStringList& found, const QStringList& expected)
{
    const QByteArray difference = TextDiff(expected, found, "line");
    if (!difference.isEmpty())
        Complain(QStringLiteral("%1: %2").arg(QLatin1String(what), QString::fromUtf8(difference)));
}

void FaultLane::Complain(const QString& what)
{
    m_complaints.append(
        QStringLiteral("%1, %2: %3")
            .arg(QLatin1String(m_request.Row().id), QLatin1String(m_fault ? m_fault->id : "plain"), what));
}

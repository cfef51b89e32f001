#include "Rehearsal.h"

#include "Clock.h"
#include "Moment.h"
#include "PeerCall.h"
#include "Peers.h"
#include "Risks.h"
#include "Scheduler.h"
#include "ToolError.h"
#include "Workspace.h"

#include <QCoreApplication>
#include <QDBusAbstractInterface>
#include <QScopeGuard>

#include <algorithm>

namespace
{

using Moment::MS_PER_S;

constexpr qint64 HOUR_MS = 3600 * MS_PER_S;

constexpr int WARM_UP_DAYS = 7;

// Passes behind the end that may decide on a start before it.
constexpr int MOST_DECIDING = 4;

// A day of thousands of lines takes a while: who waits is asked in between as well.
constexpr int TICKS_A_QUESTION = 256;

// The first tick of a timer with that period, started at start_ms, that is not before moment_ms.
qint64 TickFrom(qint64 moment_ms, qint64 start_ms, qint64 period_ms)
{
    return start_ms + (moment_ms - start_ms + period_ms - 1) / period_ms * period_ms;
}

} // namespace

qint64 Rehearsal::LongBefore_ms(qint64 from_ms)
{
    return Moment::FromLocal_ms(Moment::LocalDate(from_ms).addDays(-WARM_UP_DAYS), QTime(0, 0));
}

Rehearsal::Rehearsal(const Plan& plan)
    : m_plan(plan)
    , m_now_ms(plan.start_ms)
    , m_log(m_now_ms)
{
    Clock::SetSource([this] { return m_now_ms; });
    PeerCall::SetTransport([this](QDBusAbstractInterface* proxy, const QString& method, const QVariantList& arguments) {
        m_log.Receive(Request::Sent(m_now_ms, *proxy, method, arguments));
        return PeerReply(0);
    });
}

Rehearsal::~Rehearsal()
{
    Clock::SetSource({});
    PeerCall::SetTransport({});
}

bool Rehearsal::Run(const std::function<bool(double)>& goOn)
{
    // Deleted after the scheduler, which creates them and has their signals.
    const auto deletePeers = qScopeGuard([] { Peers::DeleteProxies(); });
    Scheduler scheduler(Workspace::FileName());
    if (!connect(&scheduler, &Scheduler::Found, this,
                 [this](const Action& action, ActionFinding finding) { m_log.OnFound(action, finding); }) ||
        !connect(&scheduler, &Scheduler::Missed, this, [this](const MissedStart& start) { m_log.OnMissed(start); }) ||
        !connect(&scheduler, &Scheduler::ExpectedPddAction, this, &Rehearsal::OnPddAction))
        throw ToolError(QStringLiteral("the engine cannot be listened to"));
    scheduler.Start();
    const auto always = [](double) { return true; };
    const bool isWhole = m_plan.everyPass ? RunEveryPass(scheduler, goOn ? goOn : always)
                                          : RunStretches(scheduler, goOn ? goOn : always);
    if (isWhole)
        Decide(scheduler);
    disconnect(&scheduler, nullptr, this, nullptr);
    m_log.Finish(m_plan.from_ms, m_plan.until_ms);
    Risks::Mark(m_log.Events());
    // What still plays is stopped with the schedule: no part of what was asked for.
    PeerCall::SetTransport([](QDBusAbstractInterface*, const QString&, const QVariantList&) { return PeerReply(0); });
    return isWhole;
}

double Rehearsal::DonePart() const
{
    return static_cast<double>(m_now_ms - m_plan.start_ms) / static_cast<double>(m_plan.until_ms - m_plan.start_ms);
}

bool Rehearsal::RunEveryPass(Scheduler& scheduler, const std::function<bool(double)>& goOn)
{
    for (qint64 tick_ms = m_plan.start_ms + Scheduler::EARLY_INTERVAL_MS; tick_ms < m_plan.until_ms;
         tick_ms += Scheduler::EARLY_INTERVAL_MS)
    {
        PlayDeviceBefore(tick_ms);
        m_now_ms = tick_ms;
        m_log.PlayDevice();
        Pass(scheduler);
        if (tick_ms % HOUR_MS == 0 && !goOn(DonePart()))
            return false;
    }
    PlayDeviceBefore(m_plan.until_ms);
    return true;
}

bool Rehearsal::RunStretches(Scheduler& scheduler, const std::function<bool(double)>& goOn)
{
    m_watches.Load(scheduler);
    while (m_now_ms < m_plan.until_ms)
    {
        if (!goOn(DonePart()))
            return false;
        Stretch stretch = Stretch::From(m_now_ms);
        stretch.end_ms = std::min(stretch.end_ms, m_plan.until_ms);
        m_watches.Renew(stretch);
        if (!RunStretch(scheduler, stretch, goOn))
            return false;
        m_now_ms = stretch.end_ms;
    }
    return true;
}

// False when goOn ended it.
bool Rehearsal::RunStretch(Scheduler& scheduler, const Stretch& stretch, const std::function<bool(double)>& goOn)
{
    // Each tick is run once; that of the start itself is none.
    qint64 free_ms = std::max(m_now_ms, m_plan.start_ms + 1);
    for (int tick = 1;; ++tick)
    {
        if (tick % TICKS_A_QUESTION == 0 && !goOn(DonePart()))
            return false;
        m_watches.Sort(scheduler);
        const qint64 far_ms = scheduler.IsDeciding() ? free_ms : m_watches.NextFar_ms(free_ms);
        const qint64 early_ms = m_watches.NextEarly_ms(free_ms);
        qint64 tick_ms = stretch.end_ms;
        if (far_ms != WatchList::NEVER)
            tick_ms = std::min(tick_ms, TickFrom(far_ms, m_plan.start_ms, Scheduler::FAR_INTERVAL_MS));
        if (early_ms != WatchList::NEVER)
            tick_ms = std::min(tick_ms, TickFrom(early_ms, m_plan.start_ms, Scheduler::EARLY_INTERVAL_MS));
        if (m_log.NextSignal_ms() <= std::min(tick_ms, stretch.end_ms - 1))
        {
            m_now_ms = std::max(m_now_ms, m_log.NextSignal_ms());
            m_log.PlayDevice();
            free_ms = std::max(free_ms, m_now_ms);
            continue;
        }
        if (tick_ms >= stretch.end_ms)
            return true;
        m_now_ms = tick_ms;
        Pass(scheduler);
        free_ms = tick_ms + 1;
    }
}

// What was due right before the end is decided on after it.
void Rehearsal::Decide(Scheduler& scheduler)
{
    m_now_ms = TickFrom(std::max(m_now_ms, m_plan.until_ms), m_plan.start_ms, Scheduler::FAR_INTERVAL_MS);
    scheduler.CheckFarActions();
    for (int i = 0; i < MOST_DECIDING && scheduler.IsDeciding(); ++i)
    {
        m_now_ms += Scheduler::FAR_INTERVAL_MS;
        scheduler.CheckFarActions();
    }
}

void Rehearsal::Pass(Scheduler& scheduler)
{
    if ((m_now_ms - m_plan.start_ms) % Scheduler::FAR_INTERVAL_MS == 0)
    {
        scheduler.CheckFarActions();
        ++m_passes;
    }
    scheduler.CheckEarlyActions();
    ++m_passes;
    m_log.EndPass();
}

void Rehearsal::PlayDeviceBefore(qint64 moment_ms)
{
    while (m_log.NextSignal_ms() < moment_ms)
    {
        m_now_ms = std::max(m_now_ms, m_log.NextSignal_ms());
        m_log.PlayDevice();
    }
}

void Rehearsal::OnPddAction(uint action, bool enable)
{
    m_log.Receive(Request::Announcement(m_now_ms, static_cast<PDD_ACTION>(action), enable));
}

#include "Rehearsal.h"

#include "Scheduler.h"
#include "base/Moment.h"
#include "base/ToolError.h"
#include "peers/PeerCall.h"
#include "peers/Peers.h"

#include <QCoreApplication>
#include <QDBusAbstractInterface>
#include <QScopeGuard>

#include <algorithm>
#include <limits>

namespace
{

using Moment::MS_PER_S;

constexpr qint64 HOUR_MS = 3600 * MS_PER_S;

// A day of thousands of lines takes a while: who waits is asked in between as well.
constexpr int TICKS_A_QUESTION = 256;

} // namespace

Rehearsal::Rehearsal(const Workspace& workspace, const Plan& plan)
    : m_use(workspace)
    , m_plan(plan)
    , m_clock(plan.start_ms)
    , m_log(m_clock)
    , m_take([this](Event&& event) { m_events.push_back(std::move(event)); })
    , m_reached_ms(std::numeric_limits<qint64>::max())
{
    PeerCall::SetTransport([this](QDBusAbstractInterface* proxy, const QString& method, const QVariantList& arguments) {
        return Answer(Request::Sent(m_clock.Now_ms(), *proxy, method, arguments));
    });
}

Rehearsal::~Rehearsal()
{
    PeerCall::SetTransport({});
}

PeerReply Rehearsal::Answer(const Request& request)
{
    Receive(request);
    if (!m_plan.silentPeers.contains(request.peer))
        return PeerReply(0);
    m_clock.Pass(request.timeout_ms);
    return PeerReply::Failed(QStringLiteral("Did not receive a reply"));
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
    for (const auto& action : scheduler.FarActions())
        action->m_forced = action->m_forced && !m_plan.isSettled;
    m_log.Load(scheduler);
    const std::function<bool(double)> ask = goOn ? goOn : [](double) { return true; };
    const bool isWhole = m_plan.everyPass ? RunEveryPass(scheduler, ask) : RunStretches(scheduler, ask);
    m_reached_ms = isWhole ? End_ms() : m_clock.Now_ms();
    Decide(scheduler, m_reached_ms);
    disconnect(&scheduler, nullptr, this, nullptr);
    m_log.Finish([this](Event&& event) { Take(std::move(event)); });
    // What still plays is stopped with the schedule: no part of what was asked for.
    PeerCall::SetTransport([](QDBusAbstractInterface*, const QString&, const QVariantList&) { return PeerReply(0); });
    return isWhole;
}

// The calendar may be stepped back as long as there are disturbances: what comes then may be sorted before all others.
void Rehearsal::Release()
{
    if (m_plan.disturbances.empty())
        m_log.Release(m_plan.from_ms, [this](Event&& event) { Take(std::move(event)); });
}

void Rehearsal::Take(Event&& event)
{
    m_risks.Mark(event);
    const bool stillPlays = event.plays && (event.end_ms == Event::OPEN || event.end_ms > m_plan.from_ms);
    if ((event.moment_ms < m_plan.from_ms && !stillPlays) || event.moment_ms >= std::min(End_ms(), m_reached_ms))
        return;
    m_take(std::move(event));
}

qint64 Rehearsal::End_ms() const
{
    return m_clock.After_ms(m_plan.until_ms - m_plan.start_ms);
}

qint64 Rehearsal::NextDisturbance_ms() const
{
    return m_disturbed < m_plan.disturbances.size() ? m_clock.After_ms(m_plan.disturbances[m_disturbed].after_ms)
                                                    : std::numeric_limits<qint64>::max();
}

// Brings about what is due.
void Rehearsal::Disturb(Scheduler& scheduler)
{
    while (NextDisturbance_ms() <= m_clock.Now_ms())
    {
        const Disturbance& disturbance = m_plan.disturbances[m_disturbed++];
        if (disturbance.step_ms != 0)
        {
            m_clock.Step(disturbance.step_ms);
            continue;
        }
        scheduler.Reload();
        m_log.Load(scheduler);
        m_log.EndPass();
        m_clock.StartTimers();
        m_watches.Load(scheduler);
    }
}

double Rehearsal::DonePart() const
{
    return static_cast<double>(m_clock.Now_ms() - m_plan.start_ms) /
           static_cast<double>(m_plan.until_ms - m_plan.start_ms);
}

bool Rehearsal::RunEveryPass(Scheduler& scheduler, const std::function<bool(double)>& goOn)
{
    for (qint64 free_ms = m_plan.start_ms;;)
    {
        const qint64 tick_ms = std::min(m_clock.TickFrom(free_ms, Scheduler::FAR_INTERVAL_MS),
                                        m_clock.WallTickFrom(free_ms, Scheduler::EARLY_INTERVAL_MS));
        const qint64 next_ms = std::min(tick_ms, NextDisturbance_ms());
        PlayDeviceBefore(std::min(next_ms, End_ms()));
        if (next_ms >= End_ms())
            return true;
        m_clock.PassTo(next_ms);
        if (NextDisturbance_ms() <= next_ms)
        {
            // The tick of that moment is still to come.
            Disturb(scheduler);
            free_ms = m_clock.Now_ms();
            continue;
        }
        m_log.PlayDevice();
        Pass(scheduler);
        free_ms = std::max(tick_ms + 1, m_clock.Now_ms());
        if (tick_ms % HOUR_MS == 0 && !goOn(DonePart()))
            return false;
    }
}

bool Rehearsal::RunStretches(Scheduler& scheduler, const std::function<bool(double)>& goOn)
{
    m_watches.Load(scheduler);
    while (m_clock.Now_ms() < End_ms())
    {
        Release();
        if (!goOn(DonePart()))
            return false;
        Stretch stretch = Stretch::From(m_clock.Now_ms());
        stretch.end_ms = std::min({stretch.end_ms, End_ms(), NextDisturbance_ms()});
        m_watches.Renew(stretch);
        if (!RunStretch(scheduler, stretch, goOn))
            return false;
        m_clock.PassTo(stretch.end_ms);
        Disturb(scheduler);
    }
    return true;
}

// False when goOn ended it.
bool Rehearsal::RunStretch(Scheduler& scheduler, const Stretch& stretch, const std::function<bool(double)>& goOn)
{
    // Each tick is run once.
    qint64 free_ms = m_clock.Now_ms();
    const qint64 passes = m_farPasses;
    bool isHeldUp = false;
    for (int tick = 1;; ++tick)
    {
        if (tick % TICKS_A_QUESTION == 0 && (Release(), !goOn(DonePart())))
            return false;
        m_watches.Sort(scheduler);
        // The first far pass of a stretch sees what the clocks left out, that behind a pass held up what passed then.
        const qint64 far_ms = m_farPasses == passes || isHeldUp ? free_ms : m_watches.NextFar_ms(free_ms);
        const qint64 early_ms = m_watches.NextEarly_ms(free_ms);
        qint64 tick_ms = stretch.end_ms;
        if (far_ms != WatchList::NEVER)
            tick_ms = std::min(tick_ms, m_clock.TickFrom(far_ms, Scheduler::FAR_INTERVAL_MS));
        if (early_ms != WatchList::NEVER)
            tick_ms = std::min(tick_ms, m_clock.WallTickFrom(early_ms, Scheduler::EARLY_INTERVAL_MS));
        if (m_log.NextSignal_ms() <= std::min(tick_ms, stretch.end_ms - 1))
        {
            m_clock.PassTo(m_log.NextSignal_ms());
            m_log.PlayDevice();
            free_ms = std::max(free_ms, m_clock.Now_ms());
            continue;
        }
        if (tick_ms >= stretch.end_ms)
            return true;
        m_clock.PassTo(tick_ms);
        Pass(scheduler);
        isHeldUp = m_clock.Now_ms() > tick_ms;
        free_ms = std::max(tick_ms + 1, m_clock.Now_ms());
    }
}

// What was due right before the end is decided on after it.
void Rehearsal::Decide(Scheduler& scheduler, qint64 end_ms)
{
    m_clock.PassTo(m_clock.TickFrom(std::max(m_clock.Now_ms() + 1, end_ms), Scheduler::FAR_INTERVAL_MS));
    scheduler.CheckFarActions();
}

void Rehearsal::Pass(Scheduler& scheduler)
{
    if (m_clock.IsTick(Scheduler::FAR_INTERVAL_MS))
    {
        scheduler.CheckFarActions();
        m_log.EndFarPass();
        ++m_farPasses;
    }
    scheduler.CheckEarlyActions();
    ++m_earlyPasses;
    m_log.EndPass();
}

void Rehearsal::PlayDeviceBefore(qint64 moment_ms)
{
    while (m_log.NextSignal_ms() < moment_ms)
    {
        m_clock.PassTo(m_log.NextSignal_ms());
        m_log.PlayDevice();
    }
}

void Rehearsal::OnPddAction(uint action, bool enable)
{
    Receive(Request::Announcement(m_clock.Now_ms(), static_cast<PDD_ACTION>(action), enable));
}

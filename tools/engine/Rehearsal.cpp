#include "Rehearsal.h"

#include "Clock.h"
#include "Moment.h"
#include "PeerCall.h"
#include "Peers.h"
#include "Scheduler.h"
#include "Workspace.h"
#include "tasks/PlayPlaylist.h"

#include <QCoreApplication>
#include <QDBusAbstractInterface>

#include <algorithm>
#include <numeric>
#include <optional>

namespace
{

using Moment::MS_PER_S;

constexpr qint64 HOUR_MS = 3600 * MS_PER_S;
constexpr qint64 DAY_AND_HOUR_MS = 25 * HOUR_MS; // a date on which the clocks are put back

constexpr int WARM_UP_DAYS = 7;

// A day of thousands of lines takes a while: who waits is asked in between as well.
constexpr int TICKS_A_QUESTION = 256;

// The first tick of a timer with that period, started at start_ms, that is not before moment_ms.
qint64 TickFrom(qint64 moment_ms, qint64 start_ms, qint64 period_ms)
{
    return start_ms + (moment_ms - start_ms + period_ms - 1) / period_ms * period_ms;
}

qint64 FloorToSecond(qint64 moment_ms)
{
    return moment_ms / MS_PER_S * MS_PER_S;
}

} // namespace

qint64 Rehearsal::LongBefore_ms(qint64 from_ms)
{
    return Moment::FromLocal_ms(Moment::LocalDate(from_ms).addDays(-WARM_UP_DAYS), QTime(0, 0));
}

Rehearsal::Rehearsal(const Plan& plan)
    : m_plan(plan)
    , m_now_ms(plan.start_ms)
    , m_device(m_events)
{
    Clock::SetSource([this] { return m_now_ms; });
    PeerCall::SetTransport([this](QDBusAbstractInterface* proxy, const QString& method, const QVariantList& arguments) {
        Receive(Request::Sent(m_now_ms, *proxy, method, arguments));
        return PeerReply(0);
    });
}

Rehearsal::~Rehearsal()
{
    Peers::DeleteProxies();
    Clock::SetSource({});
    PeerCall::SetTransport({});
}

bool Rehearsal::Run(const std::function<bool(double)>& goOn)
{
    Scheduler scheduler(Workspace::FileName());
    connect(&scheduler, &Scheduler::Found, this, &Rehearsal::OnFound);
    connect(&scheduler, &Scheduler::ExpectedPddAction, this, &Rehearsal::OnPddAction);
    scheduler.Start();
    const auto noOne = [](double) { return true; };
    const bool isWhole =
        m_plan.everyPass ? RunEveryPass(scheduler, goOn ? goOn : noOne) : RunStretches(scheduler, goOn ? goOn : noOne);
    disconnect(&scheduler, nullptr, this, nullptr);
    Finish();
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
        PlayDevice();
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
    std::optional<Stretch> before;
    while (m_now_ms < m_plan.until_ms)
    {
        if (!goOn(DonePart()))
            return false;
        Stretch stretch = Stretch::From(m_now_ms);
        stretch.end_ms = std::min(stretch.end_ms, m_plan.until_ms);
        m_watches.Renew(stretch);
        if (before)
            m_missed.LookAtChange(*before, stretch, m_watches.Watches());
        before = stretch;
        if (!RunStretch(scheduler, stretch, goOn))
            return false;
        m_missed.Look(stretch, m_watches.Watches());
        m_now_ms = stretch.end_ms;
    }
    return true;
}

// False when goOn ended it.
bool Rehearsal::RunStretch(Scheduler& scheduler, const Stretch& stretch, const std::function<bool(double)>& goOn)
{
    // Each tick is run once; that of the start itself is none.
    qint64 free_ms = std::max(m_now_ms, m_plan.start_ms + 1);
    qint64 seen_ms = stretch.begin_ms - 1;
    const auto see = [&](qint64 until_ms) {
        m_missed.NoteRunning(seen_ms, until_ms, m_watches.Watches());
        seen_ms = std::max(seen_ms, until_ms);
    };
    for (int tick = 1;; ++tick)
    {
        if (tick % TICKS_A_QUESTION == 0 && !goOn(DonePart()))
            return false;
        m_watches.Sort(scheduler);
        const qint64 far_ms = m_watches.NextFar_ms(free_ms);
        const qint64 early_ms = m_watches.NextEarly_ms(free_ms);
        qint64 tick_ms = stretch.end_ms;
        if (far_ms != WatchList::NEVER)
            tick_ms = std::min(tick_ms, TickFrom(far_ms, m_plan.start_ms, Scheduler::FAR_INTERVAL_MS));
        if (early_ms != WatchList::NEVER)
            tick_ms = std::min(tick_ms, TickFrom(early_ms, m_plan.start_ms, Scheduler::EARLY_INTERVAL_MS));
        if (m_device.Next_ms() <= std::min(tick_ms, stretch.end_ms - 1))
        {
            m_now_ms = std::max(m_now_ms, m_device.Next_ms());
            see(m_now_ms);
            PlayDevice();
            free_ms = std::max(free_ms, m_now_ms);
            continue;
        }
        if (tick_ms >= stretch.end_ms)
        {
            see(stretch.end_ms);
            return true;
        }
        m_now_ms = tick_ms;
        see(m_now_ms);
        Pass(scheduler);
        free_ms = tick_ms + 1;
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
    m_event = NONE;
    m_running = nullptr;
}

void Rehearsal::PlayDevice()
{
    m_device.Play(m_now_ms);
    m_event = NONE;
}

void Rehearsal::PlayDeviceBefore(qint64 moment_ms)
{
    while (m_device.Next_ms() < moment_ms)
    {
        m_now_ms = std::max(m_now_ms, m_device.Next_ms());
        PlayDevice();
    }
}

// The latest event from since_ms on for which that holds; null when there is none.
template <typename Predicate> const Event* Rehearsal::Latest(qint64 since_ms, Predicate predicate) const
{
    for (auto event = m_events.crbegin(); event != m_events.crend(); ++event)
    {
        if (event->moment_ms < since_ms)
            return nullptr;
        if (predicate(*event))
            return &*event;
    }
    return nullptr;
}

void Rehearsal::OnFound(const Action& action, ActionFinding finding)
{
    if (finding == ActionFinding::READY)
    {
        Event event = NewEvent(action, EventKind::START);
        MarkStart(event, action);
        m_missed.Note(action, event.due_ms);
        m_running = &action;
        m_event = m_events.size();
        m_events.push_back(std::move(event));
        return;
    }
    Event event = NewEvent(action, finding == ActionFinding::LOST ? EventKind::LOST : EventKind::SKIPPED);
    m_missed.Note(action, event.due_ms);
    // Every far pass finds it again until its time.
    if (Latest(m_now_ms - DAY_AND_HOUR_MS, [&](const Event& earlier) {
            return earlier.kind == event.kind && earlier.lineNumber == event.lineNumber &&
                   earlier.due_ms == event.due_ms;
        }) != nullptr)
        return;
    event.reason = finding == ActionFinding::LOST ? QStringLiteral("found too late to be prepared")
                                                  : QStringLiteral("its StopPlaylist follows too soon");
    m_events.push_back(std::move(event));
}

Event Rehearsal::NewEvent(const Action& action, EventKind kind) const
{
    Event event;
    event.kind = kind;
    event.moment_ms = m_now_ms;
    event.lineNumber = action.m_lineNumber;
    event.type = action.m_task->m_type;
    event.taskName = action.m_task->GetName();
    const bool isLate = action.m_forced || action.m_delay > 0;
    event.due_ms =
        isLate ? FloorToSecond(m_now_ms) - Clock::SecondsSince(action.m_startTime) * MS_PER_S
               : FloorToSecond(m_now_ms) + Clock::SecondsTo(action.m_hour, action.m_minute, action.m_second) * MS_PER_S;
    return event;
}

void Rehearsal::MarkStart(Event& event, const Action& action)
{
    event.isForced = action.m_forced;
    event.delay_s = action.m_forced ? Clock::SecondsSince(action.m_startTime) : action.m_delay;
    const QDate date = Moment::LocalDate(event.due_ms);
    const Event* const earlier = Latest(m_now_ms - DAY_AND_HOUR_MS, [&](const Event& other) {
        return other.kind == EventKind::START && other.lineNumber == event.lineNumber;
    });
    event.isRepeated = earlier != nullptr && !earlier->isForced && Moment::LocalDate(earlier->due_ms) == date;
    if (event.isForced)
        event.reason = QStringLiteral("in force since %1 when the schedule is loaded")
                           .arg(action.m_startTime.toString(QStringLiteral("HH:mm:ss")));
    else if (event.isRepeated)
        event.reason = earlier->due_ms == event.due_ms
                           ? QStringLiteral("asked for again before its time")
                           : QStringLiteral("the clocks are put back: the time comes twice");
    else if (event.delay_s > 0)
        event.reason = QStringLiteral("%1 late").arg(Moment::SpanText(event.delay_s));
}

void Rehearsal::OnPddAction(uint action, bool enable)
{
    Receive(Request::Announcement(m_now_ms, static_cast<PDD_ACTION>(action), enable));
}

void Rehearsal::Receive(Request request)
{
    if (m_event == NONE)
    {
        Event event;
        event.kind = EventKind::FOLLOWUP;
        event.moment_ms = m_now_ms;
        event.due_ms = m_now_ms;
        // Only a series of photos asks for something by itself: that it ends. It may have run for days.
        const Event* const series = Latest(m_plan.start_ms, [](const Event& other) {
            return other.kind == EventKind::START && other.type == TASK_RECORD_PHOTO;
        });
        if (series != nullptr)
        {
            event.lineNumber = series->lineNumber;
            event.type = series->type;
            event.taskName = series->taskName;
        }
        m_event = m_events.size();
        m_events.push_back(std::move(event));
    }
    static const std::vector<PlaylistItem> NO_TRACKS;
    const auto* playlist = m_running != nullptr ? qobject_cast<const PlayPlaylist*>(m_running->m_task.get()) : nullptr;
    m_device.Receive(request, m_event, playlist != nullptr ? playlist->Tracks() : NO_TRACKS);
    m_events[m_event].requests.append(std::move(request));
}

void Rehearsal::Finish()
{
    m_events.insert(m_events.end(), m_missed.Events().begin(), m_missed.Events().end());
    std::erase_if(m_events, [this](const Event& event) {
        const bool stillPlays = event.plays && (event.end_ms == Event::OPEN || event.end_ms > m_plan.from_ms);
        return event.moment_ms < m_plan.from_ms && !stillPlays;
    });
    std::ranges::stable_sort(m_events, {}, &Event::moment_ms);
    MarkRisks();
}

// While the daemon waits for one peer it starts nothing else; what can come late, as a playlist, still comes.
void Rehearsal::MarkRisks()
{
    int line = 0;
    qint64 until_ms = 0;
    for (Event& event : m_events)
    {
        if (event.kind != EventKind::START)
            continue;
        const qint64 last_ms = event.due_ms + (Action::IN_TIME_S + 1) * MS_PER_S;
        if (until_ms >= last_ms && event.delay_s == 0 && event.type != TASK_PLAY_PLAYLIST)
        {
            event.riskLine = line;
            event.riskUntil_ms = until_ms;
        }
        const qint64 free_ms =
            std::accumulate(event.requests.begin(), event.requests.end(), event.moment_ms,
                            [](qint64 moment_ms, const Request& request) { return moment_ms + request.timeout_ms; });
        if (free_ms > until_ms)
        {
            line = event.lineNumber;
            until_ms = free_ms;
        }
    }
}

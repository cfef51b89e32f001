#include "MissedStarts.h"

#include "Log.h"
#include "peers/PeerWaits.h"

#include <algorithm>
#include <unordered_set>

namespace
{

constexpr std::int64_t MS_PER_S = 1000;
constexpr std::int64_t LOOK_MS = 3000; // between two looks of a daemon that nothing holds
constexpr std::int64_t LOOK_S = LOOK_MS / MS_PER_S;
constexpr std::int64_t LEAST_JUMP_MS = 1000; // less makes no start pass unseen
constexpr int LAST_UNSEEN_S = 2;             // after midnight: what starts then is not seen ahead, but by luck

constexpr int MOST_TOLD = 20; // at once, with a record each

const QString DATE_FORMAT = QStringLiteral("yyyy-MM-dd ");
const QString TIME_FORMAT = QStringLiteral("HH:mm:ss");

// Why a start was missed.
const QString LOADED = QStringLiteral("the schedule was loaded less than 3 s before");
const QString CLOCK_FORWARD = QStringLiteral("the clock was put forward");
const QString LOCAL_FORWARD = QStringLiteral("the clocks were put forward (summer time or another time zone)");
const QString STOOD_STILL = QStringLiteral("the process stood still");
const QString WAITED = QStringLiteral("the loop waited for %1");
const QString STILL_RUNS = QStringLiteral("it still plays or works from its last start");
const QString CANNOT_START = QStringLiteral("its time cannot start: the daemon looks ahead within one day only");
const QString LUCK = QStringLiteral("its time starts by luck only: it comes too soon after midnight");
const QString UTC_MIDNIGHT = QStringLiteral("its time comes too soon after midnight in UTC, when its spot date begins");

// Rounds down, also before 1970.
std::int64_t SecondOf(std::int64_t moment_ms)
{
    return moment_ms / MS_PER_S - (moment_ms % MS_PER_S < 0 ? 1 : 0);
}

// Whether it may still be answered after its time: a playlist that is joined late, or what a load has forced. A watched
// one needs nothing but its tolerance, as no pass finds it any more.
bool CanBeLate(const Action& action, std::int64_t due_s, std::int64_t now_s, bool isWatched)
{
    if (action.m_forced)
        return action.IsDueToday();
    if (now_s - due_s >= StartIndex::DAY_S)
        return false;
    if (!isWatched)
        return action.IsDueToday() && !action.m_task->IsRunning() && action.IsLateStart();
    return now_s - due_s <= std::int64_t{action.m_task->GetDelayable_s()};
}

// Whether a load at now_s brings it about all the same: it forces what it has forced before, and its first pass joins a
// playlist whose tolerance lasts until then.
bool ComesAfterLoad(const Action& action, std::int64_t due_s, std::int64_t now_s)
{
    return action.m_forced || now_s + LOOK_S - due_s <= std::int64_t{action.m_task->GetDelayable_s()};
}

// Whether the start comes so soon after midnight that a look ahead rarely sees it.
bool IsRightAfterMidnight(QTime time)
{
    return QTime(0, 0).secsTo(time) <= LAST_UNSEEN_S;
}

// The same for midnight in UTC, at which a spot date begins.
bool IsRightAfterUtcMidnight(const Action& action, const QDate& date, QTime time)
{
    return action.HasSpotDate() && !IsRightAfterMidnight(time) &&
           Clock::UtcDateAt(date, time) != Clock::UtcDateAt(date, time.addSecs(-LAST_UNSEEN_S - 1));
}

} // namespace

void MissedStarts::Load(const ActionList& actions, const Clock::Reading& since)
{
    m_index.Build(actions);
    m_last = Clock::Read();
    m_loaded_ms = m_last->local_ms;
    m_seen_s = SecondOf(since.local_ms);
    NoteBusy(SecondOf(m_loaded_ms));
}

void MissedStarts::Answer(Action& action, bool isLate)
{
    const std::optional<int> second = action.StartSecond();
    // A time that is none, though its parts carry over to one, is late from midnight on: for no start of its own.
    if (!second || (isLate && !action.m_startTime.isValid()))
        return;
    // What is not late is today's start, also where it is still to come.
    const std::int64_t now_s = SecondOf(Clock::Read().local_ms);
    action.m_answeredDue_s = isLate ? StartIndex::Latest(*second, now_s) : StartIndex::Latest(0, now_s) + *second;
}

std::vector<MissedStart> MissedStarts::Look(const ActionList& watched)
{
    if (!m_last)
        return {};
    const Passage passage{*m_last, Clock::Read()};
    LookAt(passage);
    Settle(watched, passage.to);
    NoteBusy(SecondOf(passage.to.local_ms));
    m_last = passage.to;

    std::ranges::stable_sort(m_missed, {}, &MissedStart::due_s);
    Tell();
    m_areAll = true;
    return std::exchange(m_missed, {});
}

void MissedStarts::Tell() const
{
    const auto others = static_cast<int>(m_missed.size()) - std::min(static_cast<int>(m_missed.size()), MOST_TOLD);
    const QDate today = StartIndex::DateOf(SecondOf(m_last->local_ms));
    for (auto start = m_missed.begin() + others; start != m_missed.end(); ++start)
    {
        const QDate date = StartIndex::DateOf(start->due_s);
        const QString due = (date == today ? QString() : date.toString(DATE_FORMAT)) +
                            StartIndex::TimeOf(start->due_s).toString(TIME_FORMAT);
        OZNA_LOG(LEVEL_WARNING, "MISSED action: %d (%s), line %d, due at %s: %s", start->type,
                 qPrintable(start->taskName), start->lineNumber, qPrintable(due), qPrintable(start->cause));
    }
    if (others > 0 || !m_areAll)
        OZNA_LOG(LEVEL_WARNING, "MISSED actions: %d others before these%s", others,
                 m_areAll ? "" : ", and older ones that were not counted");
}

void MissedStarts::LookAt(const Passage& passage)
{
    const std::int64_t now_s = SecondOf(passage.to.local_ms);
    DropComing(now_s);
    if (now_s > m_seen_s)
        OpenPassed(passage);
    m_seen_s = now_s;
}

void MissedStarts::OpenPassed(const Passage& passage)
{
    const auto first = static_cast<std::ptrdiff_t>(m_open.size());
    const bool areAll =
        m_index.Backwards(m_seen_s, SecondOf(passage.to.local_ms), [&](Action& action, std::int64_t due_s) {
            if (action.m_answeredDue_s != due_s && action.IsDueOn(StartIndex::DateOf(due_s)))
                m_open.push_back({&action, due_s, passage.from, action.m_task->IsRunning() || IsBusy(action, due_s)});
        });
    m_areAll = m_areAll && areAll;
    std::reverse(m_open.begin() + first, m_open.end());
}

// What the clock has not shown yet comes again: it was put back.
void MissedStarts::DropComing(std::int64_t now_s)
{
    std::erase_if(m_open, [now_s](const Open& open) { return open.due_s > now_s; });
}

void MissedStarts::Settle(const ActionList& watched, const Clock::Reading& now)
{
    if (m_open.empty())
        return;
    std::unordered_set<const Action*> watchedActions;
    for (const auto& action : watched)
        watchedActions.insert(action.get());
    const std::int64_t now_s = SecondOf(now.local_ms);
    std::erase_if(m_open, [&](const Open& open) {
        if (open.action->m_answeredDue_s == open.due_s)
            return true;
        const bool isWatched = watchedActions.contains(open.action);
        if ((isWatched && now_s - open.due_s <= Action::IN_TIME_S) ||
            CanBeLate(*open.action, open.due_s, now_s, isWatched))
            return false;
        Add(open, CauseOf(open, now));
        return true;
    });
}

void MissedStarts::NoteBusy(std::int64_t now_s)
{
    m_busy.clear();
    m_isDeciding = !m_open.empty();
    m_index.Backwards(now_s, now_s + LOOK_S, [&](Action& action, std::int64_t due_s) {
        if (action.m_answeredDue_s == due_s || !action.IsDueOn(StartIndex::DateOf(due_s)))
            return;
        m_isDeciding = true;
        if (action.m_task->IsRunning())
            m_busy.emplace_back(&action, due_s);
    });
}

Clock::Reading MissedStarts::Restart(const ActionList& watched)
{
    const Clock::Reading now = Clock::Read();
    Close(watched, now, true);
    return now;
}

void MissedStarts::Close(const ActionList& watched, const Clock::Reading& now, bool isRestart)
{
    if (!m_last)
        return;
    LookAt({*m_last, now});
    Settle(watched, now);
    for (const Open& open : m_open)
    {
        if (isRestart && !ComesAfterLoad(*open.action, open.due_s, SecondOf(now.local_ms)))
            Add(open, LOADED);
    }
    m_open.clear();
    m_busy.clear();
    m_index.Clear();
    m_last.reset();
    m_isDeciding = false;
}

// What is certain goes before what is likely.
QString MissedStarts::CauseOf(const Open& open, const Clock::Reading& now) const
{
    if (open.wasBusy)
        return STILL_RUNS;
    const QTime time = StartIndex::TimeOf(open.due_s);
    if (time == QTime(0, 0) && !open.action->ToleratesLateness())
        return CANNOT_START;
    const Passage passage{open.from, now};
    if (WasLoadedJustBefore(open.due_s, passage))
        return LOADED;
    // When it was due, by the uptime.
    const std::int64_t due_ms = now.uptime_ms - (now.local_ms - open.due_s * MS_PER_S);
    const QString holder = PeerWaits::Throughout(due_ms, due_ms + Action::IN_TIME_S * MS_PER_S);
    if (!holder.isEmpty())
        return WAITED.arg(holder);
    if (passage.Jump_ms() > LEAST_JUMP_MS)
        return passage.ClockStep_ms() > LEAST_JUMP_MS ? CLOCK_FORWARD : LOCAL_FORWARD;
    const QString peer = PeerWaits::Longest(due_ms - Action::EARLY_S * MS_PER_S, now.uptime_ms);
    if (!peer.isEmpty())
        return WAITED.arg(peer);
    if (IsRightAfterMidnight(time))
        return LUCK;
    return IsRightAfterUtcMidnight(*open.action, StartIndex::DateOf(open.due_s), time) ? UTC_MIDNIGHT : STOOD_STILL;
}

// The first look after a load comes so long after it, or a little later on a busy machine.
bool MissedStarts::WasLoadedJustBefore(std::int64_t due_s, const Passage& passage) const
{
    const bool isFirstLook = passage.from.local_ms == m_loaded_ms;
    const bool isInTime = passage.to.uptime_ms - passage.from.uptime_ms < LOOK_MS + LEAST_JUMP_MS;
    return isFirstLook &&
           (due_s * MS_PER_S - m_loaded_ms <= LOOK_MS || (isInTime && passage.Jump_ms() < LEAST_JUMP_MS));
}

bool MissedStarts::IsBusy(const Action& action, std::int64_t due_s) const
{
    return std::ranges::find(m_busy, std::pair<const Action*, std::int64_t>(&action, due_s)) != m_busy.end();
}

void MissedStarts::Add(const Open& open, const QString& cause)
{
    // Told once, also where the clock is put back and it passes again.
    open.action->m_answeredDue_s = std::max(open.action->m_answeredDue_s, open.due_s);
    const Task& task = *open.action->m_task;
    m_missed.push_back({task.m_type, task.GetName(), open.action->m_lineNumber, open.due_s, cause});
}

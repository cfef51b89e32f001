#include "MissedStarts.h"

#include "Log.h"
#include "starts/MissedCause.h"

#include <algorithm>

namespace
{

constexpr std::int64_t LOOK_S = Passage::LOOK_MS / StartIndex::MS_PER_S;
constexpr int MOST_TOLD = 20; // at once, with a record each

// A clock that is put back by more was wrong altogether: what it showed says nothing.
constexpr std::int64_t LONGEST_BACK_S = 2 * StartIndex::DAY_S;

const QString DATE_FORMAT = QStringLiteral("yyyy-MM-dd ");
const QString TIME_FORMAT = QStringLiteral("HH:mm:ss");

} // namespace

void MissedStarts::Load(const Clock::Reading& since)
{
    m_last = Clock::Read();
    m_loaded_ms = m_last->local_ms;
    m_seen_s = StartIndex::MomentOf(since);
    m_judged_s = m_seen_s;
}

void MissedStarts::Answer(Action& action, bool isLate)
{
    const std::optional<int> second = action.StartSecond();
    // A time that is none, though its parts carry over to one, is late from midnight on: for no start of its own.
    if (!second || (isLate && !action.m_startTime.isValid()))
        return;
    // What is not late is today's start, also where it is still to come.
    const std::int64_t now_s = StartIndex::MomentOf(Clock::Read());
    action.m_answeredDay = StartIndex::DayOf(isLate ? StartIndex::Latest(*second, now_s) : now_s);
}

std::vector<MissedStart> MissedStarts::Look(const Clock::Reading& now)
{
    if (!m_last)
        return {};
    const Passage passage{*m_last, now};
    LookAt(passage);
    Settle(passage.to);
    NoteBusy(StartIndex::MomentOf(passage.to));
    m_last = passage.to;
    if (m_missed.empty() && m_areAll)
        return {};

    std::ranges::stable_sort(m_missed, {}, &MissedStart::due_s);
    Tell();
    m_areAll = true;
    return std::exchange(m_missed, {});
}

void MissedStarts::Tell() const
{
    const auto others = static_cast<int>(m_missed.size()) - std::min(static_cast<int>(m_missed.size()), MOST_TOLD);
    const QDate today = StartIndex::DateOf(StartIndex::MomentOf(*m_last));
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
    const std::int64_t now_s = StartIndex::MomentOf(passage.to);
    DropComing(now_s);
    if (now_s > m_seen_s)
        OpenPassed(passage);
    m_seen_s = now_s;
    m_judged_s = std::max(m_judged_s, now_s);
}

void MissedStarts::OpenPassed(const Passage& passage)
{
    const auto first = static_cast<std::ptrdiff_t>(m_open.size());
    const bool isJump = passage.Jump_ms() > Passage::LEAST_JUMP_MS;
    const bool areAll =
        m_starts.Backwards(m_seen_s, StartIndex::MomentOf(passage.to), [&](Action& action, std::int64_t due_s) {
            if (action.m_answeredDay != StartIndex::DayOf(due_s) && !(isJump && IsJudged(due_s)) &&
                action.IsDueOn(StartIndex::DateOf(due_s)))
                m_open.push_back({&action, due_s, passage.from, action.m_task->IsRunning() || IsBusy(action, due_s)});
        });
    m_areAll = m_areAll && areAll;
    std::reverse(m_open.begin() + first, m_open.end());
}

// A clock that was put back, and is put forward over the same times, leaves out nothing that it had not shown before.
bool MissedStarts::IsJudged(std::int64_t due_s) const
{
    return due_s <= m_judged_s && due_s > m_judged_s - LONGEST_BACK_S;
}

// What the clock has not shown yet comes again: it was put back. It was not judged either.
void MissedStarts::DropComing(std::int64_t now_s)
{
    std::erase_if(m_open, [&](const PassedStart& start) {
        if (start.due_s <= now_s)
            return false;
        m_judged_s = std::min(m_judged_s, start.due_s - 1);
        return true;
    });
}

void MissedStarts::Settle(const Clock::Reading& now)
{
    const std::int64_t now_s = StartIndex::MomentOf(now);
    std::erase_if(m_open, [&](const PassedStart& start) {
        if (start.IsAnswered())
            return true;
        if (start.CanBeAnswered(now_s, start.action->m_isWatched))
            return false;
        Add(start, MissedCause::Of(start, now, m_loaded_ms));
        return true;
    });
}

void MissedStarts::NoteBusy(std::int64_t now_s)
{
    m_busy.clear();
    m_starts.Backwards(now_s, now_s + LOOK_S, [&](Action& action, std::int64_t due_s) {
        if (action.m_task->IsRunning())
            m_busy.emplace_back(&action, due_s);
    });
    std::ranges::sort(m_busy);
}

void MissedStarts::Stop()
{
    Close(Clock::Read(), false);
}

Clock::Reading MissedStarts::Restart()
{
    const Clock::Reading now = Clock::Read();
    Close(now, true);
    return now;
}

void MissedStarts::Close(const Clock::Reading& now, bool isRestart)
{
    if (!m_last)
        return;
    LookAt({*m_last, now});
    Settle(now);
    for (const PassedStart& start : m_open)
    {
        if (isRestart && !start.ComesAfterLoad(StartIndex::MomentOf(now)))
            Add(start, MissedCause::Loaded());
    }
    m_open.clear();
    m_busy.clear();
    m_last.reset();
}

bool MissedStarts::IsBusy(const Action& action, std::int64_t due_s) const
{
    return std::ranges::binary_search(m_busy, std::pair<const Action*, std::int64_t>(&action, due_s));
}

void MissedStarts::Add(const PassedStart& start, const QString& cause)
{
    // Told once, also where the clock is put back and it passes again.
    start.action->m_answeredDay = std::max(start.action->m_answeredDay, StartIndex::DayOf(start.due_s));
    const Task& task = *start.action->m_task;
    m_missed.push_back({task.m_type, task.GetName(), start.action->m_lineNumber, start.due_s, cause});
}

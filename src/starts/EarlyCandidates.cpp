#include "EarlyCandidates.h"

#include <algorithm>

namespace
{

constexpr int DAY_S = static_cast<int>(StartIndex::DAY_S);

// A pass takes time, and each action looks at the clock itself: the span to ask in is wider on both sides.
constexpr int MARGIN_S = 5;

// A time that is none is late from midnight on.
int LatenessSecond(const Action& action)
{
    return action.m_startTime.isValid() ? action.m_startTime.msecsSinceStartOfDay() / 1000 : 0;
}

int MostLate_s(const Action& action)
{
    return static_cast<int>(std::min(action.m_task->GetMostDelayable_s(), static_cast<unsigned int>(DAY_S)));
}

// A second later in the day was yesterday's, but what is just ahead may have come when it is asked.
bool CanBeLate(int second, int most_s, int now)
{
    const int late_s = now - second;
    return late_s < -MARGIN_S ? late_s + DAY_S <= most_s + MARGIN_S : late_s <= most_s + MARGIN_S;
}

} // namespace

void EarlyCandidates::Build(ActionList& far)
{
    Clear();
    for (auto entry = far.begin(); entry != far.end(); ++entry)
    {
        const Action& action = **entry;
        if (action.m_forced)
            m_forced.push_back(entry);
        if (const int most_s = MostLate_s(action); most_s > 0)
            m_latecomers.push_back({LatenessSecond(action), most_s, entry});
    }
    // A schedule stays loaded for months.
    m_latecomers.shrink_to_fit();
    std::ranges::stable_sort(m_latecomers, {}, &Latecomer::second);
    if (!m_latecomers.empty())
        m_most_s = std::ranges::max_element(m_latecomers, {}, &Latecomer::most_s)->most_s;
}

void EarlyCandidates::Clear()
{
    m_forced.clear();
    m_latecomers.clear();
    m_most_s = 0;
}

ActionList::Noted EarlyCandidates::At(const Clock::Reading& now, ActionList& far)
{
    ActionList::Noted candidates;
    if (!Clock::IsSteady(now))
    {
        for (auto entry = far.begin(); entry != far.end(); ++entry)
            candidates.push_back(entry);
        return candidates;
    }
    const int second = StartIndex::SecondOf(StartIndex::MomentOf(now));
    AddForced(candidates);
    AddAt(second, candidates);
    // The next day may have begun when they are asked.
    if (second >= DAY_S - MARGIN_S)
        AddAt(second - DAY_S, candidates);
    std::erase_if(candidates, [](const auto& entry) { return (*entry)->m_isWatched; });
    std::ranges::sort(candidates, {}, [](const auto& entry) { return (*entry)->m_place; });
    candidates.erase(std::unique(candidates.begin(), candidates.end()), candidates.end());
    return candidates;
}

void EarlyCandidates::AddAt(int now, ActionList::Noted& candidates) const
{
    AddNear(now, candidates);
    AddLate(now, candidates);
}

// The seconds to a start are a plain difference here.
void EarlyCandidates::AddNear(int now, ActionList::Noted& candidates) const
{
    m_starts.Within(now + Action::AHEAD.last_s - MARGIN_S, now + Action::AHEAD.first_s + MARGIN_S,
                    [&](auto entry) { candidates.push_back(entry); });
}

// What was forced once and has started is like any other from then on.
void EarlyCandidates::AddForced(ActionList::Noted& candidates)
{
    std::erase_if(m_forced, [](const auto& entry) { return !(*entry)->m_forced; });
    candidates.insert(candidates.end(), m_forced.begin(), m_forced.end());
}

void EarlyCandidates::AddLate(int now, ActionList::Noted& candidates) const
{
    AddLate(now - m_most_s - MARGIN_S, now + MARGIN_S, now, candidates);
    // Yesterday's, but for those that are among these already.
    AddLate(std::max(now - m_most_s - MARGIN_S + DAY_S, now + MARGIN_S + 1), DAY_S, now, candidates);
}

void EarlyCandidates::AddLate(int first, int last, int now, ActionList::Noted& candidates) const
{
    const auto begin = std::ranges::lower_bound(m_latecomers, first, {}, &Latecomer::second);
    const auto end = std::ranges::upper_bound(m_latecomers, last, {}, &Latecomer::second);
    for (auto late = begin; late < end; ++late)
    {
        // What has been played, or plays, is the most of them: it need not look at the clock.
        if (CanBeLate(late->second, late->most_s, now) && (*late->entry)->ToleratesLateness() &&
            !(*late->entry)->m_task->IsRunning())
            candidates.push_back(late->entry);
    }
}

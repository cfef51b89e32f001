#include "PassedStart.h"

#include "Action.h"
#include "Passage.h"
#include "StartIndex.h"

namespace
{

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

} // namespace

bool PassedStart::IsAnswered() const
{
    return action->m_answeredDay == StartIndex::DayOf(due_s);
}

bool PassedStart::CanBeAnswered(std::int64_t now_s, bool isWatched) const
{
    return (isWatched && now_s - due_s <= Action::IN_TIME_S) || CanBeLate(*action, due_s, now_s, isWatched);
}

bool PassedStart::ComesAfterLoad(std::int64_t now_s) const
{
    constexpr std::int64_t LOOK_S = Passage::LOOK_MS / StartIndex::MS_PER_S;
    return action->m_forced || now_s + LOOK_S - due_s <= std::int64_t{action->m_task->GetDelayable_s()};
}

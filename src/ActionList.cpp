#include "ActionList.h"

#include <algorithm>

void ActionList::Append(std::unique_ptr<Action> action)
{
    m_entries.push_back(std::move(action));
}

void ActionList::Clear()
{
    m_entries.clear();
}

void ActionList::MoveTo(ActionList& target, const Noted& noted)
{
    for (const auto& entry : noted)
        target.m_entries.splice(target.m_entries.end(), m_entries, entry);
}

Action* ActionList::FindLatestStarted(TaskType type, QTime now) const
{
    Action* latest = nullptr;
    for (const auto& action : m_entries)
    {
        if (action->m_task->m_type != type || action->m_startTime > now)
            continue;
        if (latest == nullptr || action->m_startTime > latest->m_startTime)
            latest = action.get();
    }
    return latest;
}

const Action* ActionList::FindPlaylistStop(const Action& play, QTime soon) const
{
    const auto stop = std::ranges::find_if(m_entries, [&](const auto& action) {
        const Task& task = *action->m_task;
        return task.m_type == TASK_STOP_PLAYLIST && !task.m_identifier.isEmpty() &&
               task.m_identifier == play.m_task->m_identifier && play.m_startTime < action->m_startTime &&
               soon > action->m_startTime;
    });
    return stop != m_entries.end() ? stop->get() : nullptr;
}

#include "ActionList.h"

#include <iterator>
#include <limits>

void ActionList::Append(std::unique_ptr<Action> action)
{
    m_entries.push_back(std::move(action));
    Place(std::prev(m_entries.end()));
}

void ActionList::Clear()
{
    m_entries.clear();
}

void ActionList::MoveTo(ActionList& target, const Noted& noted)
{
    for (const auto& entry : noted)
    {
        target.m_entries.splice(target.m_entries.end(), m_entries, entry);
        target.Place(entry);
    }
}

// The entry is the last.
void ActionList::Place(Entries::iterator entry)
{
    Action& action = **entry;
    action.m_isWatched = m_isWatched;
    action.m_place = entry == m_entries.begin() ? 0 : (*std::prev(entry))->m_place + 1;
    if (action.m_place != std::numeric_limits<std::uint32_t>::max())
        return;
    // Thousands of millions of returns: the places begin anew.
    std::uint32_t place = 0;
    for (const auto& each : m_entries)
        each->m_place = place++;
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

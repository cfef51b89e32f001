#include "PlaylistStops.h"

#include <algorithm>
#include <tuple>

namespace
{

std::tuple<const QString&, QTime> KeyOf(const Action* stop)
{
    return {stop->m_task->m_identifier, stop->m_startTime};
}

} // namespace

void PlaylistStops::Build(const ActionList& actions)
{
    m_stops.clear();
    for (const auto& action : actions)
    {
        const Task& task = *action->m_task;
        if (task.m_type == TASK_STOP_PLAYLIST && !task.m_identifier.isEmpty())
            m_stops.push_back(action.get());
    }
    std::ranges::sort(m_stops, {}, KeyOf);
}

const Action* PlaylistStops::FirstOf(const Action& play, QTime soon) const
{
    const QString& identifier = play.m_task->m_identifier;
    const std::tuple<const QString&, QTime> start(identifier, play.m_startTime);
    const std::tuple<const QString&, QTime> end(identifier, soon);
    const Action* first = nullptr;
    for (auto stop = std::ranges::upper_bound(m_stops, start, {}, KeyOf); stop != m_stops.end() && KeyOf(*stop) < end;
         ++stop)
    {
        if (!(*stop)->m_isWatched && (first == nullptr || (*stop)->m_place < first->m_place))
            first = *stop;
    }
    return first;
}

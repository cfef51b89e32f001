#include "ScheduleIndex.h"

void ScheduleIndex::Build(ActionList& far)
{
    m_starts.Build(far);
    m_candidates.Build(far);
    m_stops.Build(far);
}

void ScheduleIndex::Clear()
{
    m_starts.Clear();
    m_candidates.Clear();
    m_stops.Clear();
}

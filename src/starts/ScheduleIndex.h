#pragma once

#include "EarlyCandidates.h"
#include "PlaylistStops.h"
#include "StartIndex.h"

// What finds actions of a schedule without visiting all of them. Built once a load, and cleared before the actions are
// deleted.
class ScheduleIndex final
{
public:
    ScheduleIndex() = default;
    ScheduleIndex(const ScheduleIndex&) = delete;
    ScheduleIndex& operator=(const ScheduleIndex&) = delete;

    // The schedule has been loaded into far, and what is in force has been forced.
    void Build(ActionList& far);
    void Clear();

    StartIndex m_starts;
    EarlyCandidates m_candidates{m_starts};
    PlaylistStops m_stops;
};

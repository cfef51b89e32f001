#pragma once

#include "ActionList.h"

#include <vector>

// The stops of playlists in a schedule, sorted by the playlist that they stop. Built once a load.
class PlaylistStops final
{
public:
    // Takes over the stops of the list, which live as long as they are looked for here. They may move to other lists.
    void Build(const ActionList& actions);
    void Clear() { m_stops.clear(); }

    // The first stop in the far list of the playlist that play starts, by a non-empty identifier equal to the letter,
    // whose start time is after that of play and before soon. Null when there is none.
    [[nodiscard]] const Action* FirstOf(const Action& play, QTime soon) const;

private:
    std::vector<const Action*> m_stops; // in the order of their identifiers, then of their start times
};

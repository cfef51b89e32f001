#pragma once

#include "Event.h"
#include "Stretch.h"
#include "WatchList.h"

#include <QHash>

#include <vector>

// Tells which of the times at which entries were due have gone by without anything.
class MissedTimes final
{
public:
    // Something came of the action's time at due_ms.
    void Note(const Action& action, qint64 due_ms) { m_noted.insert(&action, due_ms); }

    // The wall clock has run through stretch, whose watches are given; LookAtChange was called at its beginning.
    void Look(const Stretch& stretch, const std::vector<WatchList::Watch>& watches);

    // The stretch before next has ended: there may be times between the two, which the clocks, put forward, leave out.
    void LookAtChange(const Stretch& before, const Stretch& next, const std::vector<WatchList::Watch>& watches);

    // What was missed so far.
    [[nodiscard]] const std::vector<Event>& Events() const { return m_events; }

private:
    QMultiHash<const Action*, qint64> m_noted; // since the last stretch
    std::vector<Event> m_events;
    qint64 m_lastChange_ms = 0; // when the clocks were changed
};

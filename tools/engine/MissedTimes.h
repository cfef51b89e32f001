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

    // The wall clock has run through stretch, whose watches are given. Adds what was missed in it to events.
    void Look(const Stretch& stretch, const std::vector<WatchList::Watch>& watches, std::vector<Event>& events);

    // The stretch before next has ended: adds what next's date has, and the clocks, put forward, leave out.
    void LookAtChange(const Stretch& before, const Stretch& next, const std::vector<WatchList::Watch>& watches,
                      std::vector<Event>& events);

private:
    QMultiHash<const Action*, qint64> m_noted; // since the last stretch
};

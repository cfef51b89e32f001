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

    // Nothing changes after from_ms and before to_ms: a task that is under way keeps its action from the times after
    // from_ms, up to and including to_ms. watches: of the stretch.
    void NoteRunning(qint64 from_ms, qint64 to_ms, const std::vector<WatchList::Watch>& watches);

    // The wall clock has run through stretch, whose watches are given; LookAtChange was called at its beginning. Times
    // right before its end, for which a start may still come, are looked at behind the next one.
    void Look(const Stretch& stretch, const std::vector<WatchList::Watch>& watches);

    // The stretch before next has ended: there may be times between the two, which the clocks, put forward, leave out.
    void LookAtChange(const Stretch& before, const Stretch& next, const std::vector<WatchList::Watch>& watches);

    // What was missed so far.
    [[nodiscard]] const std::vector<Event>& Events() const { return m_events; }

private:
    using Times = QMultiHash<const Action*, qint64>;

    // One time of an action, of which it is not known yet what came of it.
    struct Open
    {
        const Action* action;
        qint64 due_ms;
    };

    [[nodiscard]] QString Reason(const Open& open) const;

    Times m_noted;   // which are not looked at yet
    Times m_running; // at which the task was still under way, likewise
    std::vector<Open> m_open;
    std::vector<Event> m_events;
    qint64 m_lastChange_ms = 0; // when the clocks were changed
};

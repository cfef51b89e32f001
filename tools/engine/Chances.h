#pragma once

#include "RehearsalClock.h"

#include <QHash>

#include <vector>

class Action;
class Scheduler;

// In how many phases of the daemon's far timer a rehearsal's starts are found: see Phases.
class Chances final
{
public:
    // A start that only other phases find.
    struct Unfound
    {
        const Action* action;
        qint64 due_ms;
        int phases_ms;
    };

    // clock: of the rehearsal; outlives this.
    explicit Chances(RehearsalClock& clock)
        : m_clock(clock)
    {
    }

    // The scheduler has loaded its schedule now. Its actions live until it loads again.
    void Load(const Scheduler& scheduler);

    // The phases that find the action's start, which is just to be started: due_ms in time, or late now.
    [[nodiscard]] int OfStart(const Action& action, qint64 due_ms, bool isLate) const;

    // Those that would have found what this one has missed; 0 where that is not known.
    [[nodiscard]] int OfMissed(int lineNumber, qint64 due_ms) const;

    // The action is started now.
    void OnStart(const Action& action) { m_busy.push_back(&action); }

    // Tasks may have ended by now.
    void NoteEnds();

    // A far pass has looked. Those that come a second time just after the clocks were put back, too soon for it. The
    // daemon does not miss them, as they have come.
    [[nodiscard]] std::vector<Unfound> Repeated() const;

private:
    [[nodiscard]] int Of(const Action& action, qint64 due_ms, qint64 around_ms) const;

    RehearsalClock& m_clock;
    std::vector<const Action*> m_actions; // by their lines
    std::vector<const Action*> m_busy;    // whose tasks are under way, or were at the last look
    QHash<int, qint64> m_free_ms;         // by lines: since when they are not
    qint64 m_loaded_ms = 0;
};

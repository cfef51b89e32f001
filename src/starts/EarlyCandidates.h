#pragma once

#include "ActionList.h"
#include "Clock.h"
#include "StartIndex.h"

#include <cstdint>
#include <vector>

// Which far actions a pass has to ask whether they are early. All others answer no: IsEarly holds for what starts
// within seconds, for what is forced, and for what is late within the tolerance of its task. The answer itself is the
// action's.
class EarlyCandidates final
{
public:
    // starts: outlives the candidates; built from the same list as they are.
    explicit EarlyCandidates(const StartIndex& starts)
        : m_starts(starts)
    {
    }

    // The schedule has been loaded and what is in force has been forced. far: lives until Clear.
    void Build(ActionList& far);
    void Clear();

    // The entries of far to ask at that moment, in the order of the list; more of them than are early. All of them
    // while the clocks change, as the wall clock does not tell then how many seconds are left.
    [[nodiscard]] ActionList::Noted At(const Clock::Reading& now, ActionList& far);

private:
    // What its task lets be late.
    struct Latecomer
    {
        int second; // of the day, from which its lateness counts
        int most_s; // later than that it is never early
        ActionList::Entries::iterator entry;
    };

    void AddAt(int now, ActionList::Noted& candidates) const;
    void AddNear(int now, ActionList::Noted& candidates) const;
    void AddForced(ActionList::Noted& candidates);
    void AddLate(int now, ActionList::Noted& candidates) const;
    void AddLate(int first, int last, int now, ActionList::Noted& candidates) const;

    const StartIndex& m_starts;
    ActionList::Noted m_forced;
    std::vector<Latecomer> m_latecomers; // in the order of their seconds
    int m_most_s = 0;                    // of all latecomers
};

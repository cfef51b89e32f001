#pragma once

#include "Action.h"

#include <list>
#include <memory>
#include <vector>

// An ordered list that owns its actions. An action is in one list only; moving it to another does not change its
// address, and an iterator to it stays valid.
class ActionList final
{
public:
    using Entries = std::list<std::unique_ptr<Action>>;
    // Entries noted during a visit, to be moved after it: a list never changes while it is being visited.
    using Noted = std::vector<Entries::iterator>;

    // isWatched: of the actions in it, which they are told.
    explicit ActionList(bool isWatched = false)
        : m_isWatched(isWatched)
    {
    }

    Entries::iterator begin() { return m_entries.begin(); }
    Entries::iterator end() { return m_entries.end(); }
    [[nodiscard]] Entries::const_iterator begin() const { return m_entries.begin(); }
    [[nodiscard]] Entries::const_iterator end() const { return m_entries.end(); }
    [[nodiscard]] int Size() const { return static_cast<int>(m_entries.size()); }

    void Append(std::unique_ptr<Action> action);

    // Deletes all actions, in order.
    void Clear();

    // Moves the noted entries of this list, in the order noted, to the end of target.
    void MoveTo(ActionList& target, const Noted& noted);

    // Of the actions with that type whose start time is at or before now, by time of day alone, the one that starts
    // last; the first of several with one start time. Null when there is none.
    [[nodiscard]] Action* FindLatestStarted(TaskType type, QTime now) const;

private:
    void Place(Entries::iterator entry);

    const bool m_isWatched;
    Entries m_entries;
};

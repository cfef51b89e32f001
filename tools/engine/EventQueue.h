#pragma once

#include "Event.h"

#include <deque>
#include <functional>
#include <map>

// The events of a rehearsal, each until nothing changes it any more. They have numbers, counted from 0 in the order in
// which they come about.
class EventQueue final
{
public:
    using Take = std::function<void(Event&& event)>;
    using IsHeld = std::function<bool(size_t number)>;

    // How long after its moment a start may still be found to be missed: what may start late is looked for through a
    // day, and looked at once a day at least.
    static constexpr qint64 LATEST_MS = 3LL * 86400 * 1000;

    // Returns its number.
    size_t Append(Event event);

    // Adds one that comes later than its moment; it has no number.
    void AppendMissed(Event event);

    // One that has not been taken.
    [[nodiscard]] Event& operator[](size_t number) { return m_events[number - m_taken]; }

    // Has those taken that come before until_ms, in the order of their moments, up to the first that is held. The
    // moments of those with a number never went back.
    void Release(qint64 until_ms, const IsHeld& isHeld, const Take& take);

    // Has all taken, in the order of their moments.
    void Finish(const Take& take);

private:
    std::deque<Event> m_events;
    std::multimap<qint64, Event> m_missed; // by their moments
    size_t m_taken = 0;                    // of those with a number
};

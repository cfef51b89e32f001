#pragma once

#include "Action.h"
#include "Stretch.h"

#include <QDate>
#include <QHash>

#include <vector>

class Scheduler;

// Computes the moments at which the scheduler's passes can find something, so that a rehearsal can skip all others. It
// asks the actions themselves, and adds only that inside a stretch the seconds to a start count down steadily.
// It gives no moments outside the stretch: the list is renewed for every stretch.
class WatchList final
{
public:
    // One action in one stretch.
    struct Watch
    {
        const Action* action;
        Action::Window inTime;  // the action's own, which stay the same
        Action::Window delayed; // empty: it is never started late
        bool isDue = false;
        bool isWatchedClosely = false; // is in the scheduler's early list
        qint64 start_ms = 0;           // when it is due, in the stretch or out of it
        qint64 due_s = 0;              // the same by the clock on the wall, as MissedStarts counts
    };

    static constexpr qint64 NEVER = -1;

    // Watches the actions of scheduler, which are the same until Load is called again.
    void Load(const Scheduler& scheduler);

    // Asks every action anew. The Clock shows the stretch's beginning.
    void Renew(const Stretch& stretch);

    // Takes over which actions are in which of the scheduler's lists.
    void Sort(const Scheduler& scheduler);

    // The first moment from now_ms on at which the far pass, or the early one, can find something; NEVER where that is
    // not in this stretch.
    [[nodiscard]] qint64 NextFar_ms(qint64 now_ms) const;
    [[nodiscard]] qint64 NextEarly_ms(qint64 now_ms) const;

    [[nodiscard]] const std::vector<Watch>& Watches() const { return m_watches; }

private:
    // From the first moment on, up to but not including the second.
    struct Span
    {
        qint64 begin_ms;
        qint64 end_ms;
    };

    [[nodiscard]] qint64 NextFar_ms(const Watch& watch, qint64 now_ms) const;
    [[nodiscard]] qint64 NextEarly_ms(const Watch& watch, qint64 now_ms) const;
    [[nodiscard]] qint64 NextLate_ms(const Watch& watch, qint64 now_ms, const Action::Window& window) const;
    [[nodiscard]] qint64 Next_ms(const Span& span, qint64 now_ms) const;
    [[nodiscard]] static Span SpanOf(qint64 start_ms, const Action::Window& window);

    Stretch m_stretch{};
    std::vector<Watch> m_watches;
    QHash<const Action*, size_t> m_places;
    std::vector<size_t> m_close; // those that are watched closely
};

#pragma once

#include "Action.h"
#include "DaysKey.h"
#include "Stretch.h"

#include <QHash>

#include <array>
#include <map>
#include <optional>
#include <vector>

class Scheduler;

// Computes the moments at which the scheduler's passes can find something, so that a rehearsal can skip all others. It
// asks the actions themselves, and adds only that inside a stretch the seconds to a start count down steadily.
// It gives no moments outside the stretch: the list is renewed for every stretch.
//
// Sorted by time: asking for the next moment costs as much as there is around that moment, however long the schedule.
class WatchList final
{
public:
    static constexpr qint64 NEVER = -1;

    // Watches the actions of scheduler, which are the same until Load is called again.
    void Load(const Scheduler& scheduler);

    // Computes anew what every action does in that stretch. The Clock shows the stretch's beginning.
    void Renew(const Stretch& stretch);

    // Takes over which actions are in the scheduler's early list.
    void Sort(const Scheduler& scheduler);

    // The first moment from now_ms on at which the far pass, or the early one, can find something; NEVER where that is
    // not in this stretch. now_ms never goes back inside a stretch.
    [[nodiscard]] qint64 NextFar_ms(qint64 now_ms);
    [[nodiscard]] qint64 NextEarly_ms(qint64 now_ms) const;

private:
    // One action in one stretch.
    struct Watch
    {
        const Action* action;
        size_t days;               // its place in m_days
        std::optional<int> second; // of the day at which it starts
        qint64 start_ms = 0;       // when it is due, in the stretch or out of it
        qint64 due_s = 0;          // the same by the clock on the wall, as MissedStarts counts
    };

    // From the first moment on, up to but not including the second.
    struct Span
    {
        qint64 begin_ms;
        qint64 end_ms;
    };

    // In which the far pass may find an action: around its start, or late.
    struct Chance
    {
        Span span;
        size_t watch;
        bool isLate;
    };

    // Actions that are due on the same days, of which one is asked for all.
    struct Days
    {
        const Action* action;
        bool areDue = false;
    };

    void Add(const Action& action, std::map<DaysKey, size_t>& days);
    void SetStarts();
    void AddChances(size_t place);
    void AddChance(const Span& span, size_t place, bool isLate);
    [[nodiscard]] qint64 NextFar_ms(const Chance& chance, qint64 now_ms) const;
    [[nodiscard]] qint64 NextNear_ms(const Watch& watch, qint64 now_ms) const;
    [[nodiscard]] qint64 NextEarly_ms(const Watch& watch, qint64 now_ms) const;
    // Those of today and of yesterday; empty ones where there are none.
    [[nodiscard]] std::array<Span, 2> LateSpans(const Action& action, const Action::Window& window) const;
    [[nodiscard]] qint64 Next_ms(const Span& span, qint64 now_ms) const;
    [[nodiscard]] static Span SpanOf(qint64 start_ms, const Action::Window& window);

    Stretch m_stretch{};
    std::vector<Watch> m_watches;
    std::vector<Days> m_days;
    QHash<const Action*, size_t> m_places;
    std::vector<size_t> m_close; // those that are watched closely
    std::vector<size_t> m_forced;
    std::vector<Chance> m_chances; // of the stretch, in the order of their beginnings
    size_t m_coming = 0;           // the first of them that was still to come
    std::vector<Chance> m_open;    // those that have begun, and not ended
};

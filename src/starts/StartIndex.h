#pragma once

#include "ActionList.h"
#include "Clock.h"

#include <cstdint>
#include <functional>
#include <vector>

// The actions of a schedule, sorted by start time, to find those in a span of time without visiting all. Built once a
// load; it keeps nothing but what the lines say, so clock steps, time zones and days leave it as it is.
// Moments are seconds of local time, counted from 1970-01-01 00:00:00 local time.
class StartIndex final
{
public:
    static constexpr std::int64_t DAY_S = 86400;
    static constexpr std::int64_t MS_PER_S = 1000;

    // Takes over the actions of the list, which live as long as the index is used. They may move to other lists.
    void Build(ActionList& actions);
    void Clear() { m_starts.clear(); }

    // Calls visit for each start time after from_s up to and including to_s, latest first; those of one moment in the
    // reverse order of the list. Leaves out times that are none of a day. Does not check whether the action is due on
    // that day. Visiting a span of years could take minutes, so only the last day is visited in any case, and up to a
    // hundred thousand starts before it. False when some were left out.
    using Visit = std::function<void(Action& action, std::int64_t due_s)>;
    bool Backwards(std::int64_t from_s, std::int64_t to_s, const Visit& visit) const;

    // Calls visit for each action whose Action::SecondsAfterMidnight is from first_s up to and including last_s, in the
    // order of these, then of the list as it was built; those that are no time of a day included.
    using EntryVisit = std::function<void(ActionList::Entries::iterator entry)>;
    void Within(std::int64_t first_s, std::int64_t last_s, const EntryVisit& visit) const;

    // The moment that a reading shows.
    [[nodiscard]] static std::int64_t MomentOf(const Clock::Reading& reading);

    // The latest moment up to now_s in that second of a day, and a moment's day, counted from 1970-01-01, second of its
    // day, date and time of day.
    [[nodiscard]] static std::int64_t Latest(int second, std::int64_t now_s);
    [[nodiscard]] static std::int32_t DayOf(std::int64_t moment_s);
    [[nodiscard]] static int SecondOf(std::int64_t moment_s);
    [[nodiscard]] static QDate DateOf(std::int64_t moment_s);
    [[nodiscard]] static QTime TimeOf(std::int64_t moment_s);

private:
    struct Start
    {
        int second; // after midnight; what no int holds is clamped
        ActionList::Entries::iterator entry;
    };
    using Starts = std::vector<Start>;

    [[nodiscard]] Starts::const_iterator FirstAfter(std::int64_t second) const;

    Starts m_starts; // in the order of their times, then of the list
};

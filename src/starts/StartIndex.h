#pragma once

#include "ActionList.h"
#include "Clock.h"

#include <cstdint>
#include <functional>
#include <vector>

// The actions of a schedule by their start times, to find those that start in a span of time without asking all.
// Moments are seconds of the clock on the wall, since it showed 1970-01-01 00:00:00.
class StartIndex final
{
public:
    static constexpr std::int64_t DAY_S = 86400;
    static constexpr std::int64_t MS_PER_S = 1000;

    // Takes over the actions that start at a time of the day, which live as long as the index is used.
    void Build(const ActionList& actions);
    void Clear() { m_starts.clear(); }

    // Calls visit for each start time after from_s up to and including to_s, day by day, the latest first and those of
    // one moment against the order of the list, whether the action is due on that day or not. Of a span of years not
    // all are visited, as that could take minutes: those of the last day, and up to a hundred thousand more. False when
    // some were not.
    using Visit = std::function<void(Action& action, std::int64_t due_s)>;
    bool Backwards(std::int64_t from_s, std::int64_t to_s, const Visit& visit) const;

    // The moment that a reading shows.
    [[nodiscard]] static std::int64_t MomentOf(const Clock::Reading& reading);

    // The latest moment up to now_s in that second of a day, and a moment's date and time of day.
    [[nodiscard]] static std::int64_t Latest(int second, std::int64_t now_s);
    [[nodiscard]] static QDate DateOf(std::int64_t moment_s);
    [[nodiscard]] static QTime TimeOf(std::int64_t moment_s);

private:
    struct Start
    {
        int second; // of the day
        Action* action;
    };

    std::vector<Start> m_starts; // in the order of their times, then of the list
};

#pragma once

#include "Clock.h"

#include <cstdint>

class Action;

// A start that has passed, of which it is not known yet whether it will still be answered. Moments are those of
// StartIndex.
struct PassedStart
{
    Action* action;
    std::int64_t due_s;
    Clock::Reading from; // the look before it was due
    bool wasBusy;        // its task was still under way

    // Whether it has been answered.
    [[nodiscard]] bool IsAnswered() const;

    // Whether it may still be answered, in its two seconds or late: a playlist that is joined, or what a load has
    // forced. isWatched: the action was found early, and needs nothing but its tolerance, as no pass finds it any more.
    [[nodiscard]] bool CanBeAnswered(std::int64_t now_s, bool isWatched) const;

    // Whether a load at now_s brings it about all the same: it forces what it has forced before, and its first pass
    // joins a playlist whose tolerance lasts until then.
    [[nodiscard]] bool ComesAfterLoad(std::int64_t now_s) const;
};

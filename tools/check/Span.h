#pragma once

#include "Startable.h"

#include <functional>
#include <vector>

// What an entry plays, from its start on.
struct Span : Startable
{
    qint64 length_s; // as long as it plays when nothing stops it

    // A span that begins while another one still plays. Both are counted by the days on which the first one begins.
    struct Meeting
    {
        const Span& first;
        const Span& second;
        int ahead_s;         // from the begin of the first to that of the second
        YearDays::Bits days; // on which both come; at least one
    };

    // Those on which the span comes so many days later.
    [[nodiscard]] YearDays::Bits DaysBefore(int days_later) const { return days >> static_cast<size_t>(days_later); }

    // Looks, for each span, at those that begin before it and still play, the nearest first, until told that it has
    // seen enough. spans: shorter than a day; sorted by their seconds here. Of those that begin together the later line
    // is the second.
    static void ForMeetings(std::vector<Span>& spans, const std::function<bool(const Meeting&)>& isEnough);
};

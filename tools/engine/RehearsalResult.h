#pragma once

#include "Event.h"
#include "ScheduleLine.h"

#include <QString>

#include <set>
#include <vector>

// What a rehearsal of a schedule file has given. Moments in milliseconds since 1970-01-01 00:00:00 UTC.
struct RehearsalResult
{
    QString file;    // as the user named it
    qint64 begin_ms; // of the span of interest
    qint64 end_ms;   // the first moment that is no part of it
    std::vector<ScheduleLine> lines = {};
    std::vector<Event> events = {}; // in the order of their moments
    bool isCut = false;             // the user has ended it at end_ms, before its end
    std::set<int> active = {};      // the lines that have an event, also where the events were taken meanwhile

    // Whether it has reached the span: if not, nothing is known of it.
    [[nodiscard]] bool HasBegun() const { return end_ms > begin_ms; }

    // How many lines the daemon rejects.
    [[nodiscard]] int Rejected() const;
};

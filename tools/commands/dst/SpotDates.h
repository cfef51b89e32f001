#pragma once

#include "LinePhrases.h"
#include "engine/Event.h"
#include "engine/ScheduleLine.h"

#include <QString>

#include <vector>

// Spot dates, which go by UTC, in local time.
namespace SpotDates
{

// From the first moment on, up to but not including the second.
struct Span
{
    qint64 begin_ms;
    qint64 end_ms;
};

// The days around each date from first to last that a line names as its spot date, in order, without overlaps.
[[nodiscard]] std::vector<Span> Spans(const std::vector<ScheduleLine>& lines, const QDate& first, const QDate& last);

// A heading, and for each line that starts on a local date other than its spot date, when and how often; empty if none
// does. events: of rehearsals of the spans.
[[nodiscard]] QString Text(const std::vector<ScheduleLine>& lines, const std::vector<Event>& events,
                           LinePhrases& phrases);

} // namespace SpotDates

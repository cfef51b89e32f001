#pragma once

#include "ScheduleLine.h"

#include <QDate>

#include <vector>

// Which actions a load makes start too early. A load looks at the time of day alone: it takes the latest Light and
// PlayRadioFm so far for what is in force, whatever their days, and what it takes starts when its day begins. A
// playlist whose tolerance reaches over midnight is found late when its day begins, as one of the evening before.
namespace EarlyLoads
{

struct Early
{
    int line;
    QDate day;       // the first on which it can come, at midnight
    int from_s;      // of the day: it is forced by a load of another day from then on; of a playlist, its start
    int until_s;     // exclusive
    bool isPlaylist; // any load of another day brings it
};

// Those that a load in the year from first on can bring, in the order of the lines. Not those that change nothing when
// they come early, or that a line of the first minute of their day puts right again.
[[nodiscard]] std::vector<Early> Of(const std::vector<ScheduleLine>& lines, const QDate& first);

} // namespace EarlyLoads

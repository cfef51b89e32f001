#pragma once

#include "Entry.h"
#include "YearDays.h"

#include <QDate>

// An entry that starts at one second of its days, and those days of a year. What has no time of day, or midnight sharp,
// has findings of its own.
struct Startable
{
    const Entry* entry;
    int second; // of the day
    YearDays::Bits days;

    // Whether the entry has such a second.
    [[nodiscard]] static bool Is(const Entry& entry);

    // The time that is written, where the daemon reads another one; else empty. What the other one leads to has that
    // one cause. The entry is not rejected.
    [[nodiscard]] static QString MisreadTime(const Entry& entry);

    // Of such an entry.
    [[nodiscard]] static int Second(const Entry& entry);

    // The first of the days, as findings show it. first: that of the year. days: at least one.
    [[nodiscard]] static QString FirstDay(const YearDays::Bits& days, const QDate& first);

    // A second of the day as a schedule has it.
    [[nodiscard]] static QString TimeText(int second);
};

#pragma once

#include <QtGlobal>

// A span of time in which the local date, the UTC date and the difference between local time and UTC stay the same, so
// that the clock on the wall just runs on. Milliseconds since 1970-01-01 00:00:00 UTC; time zone: the process's.
struct Stretch
{
    qint64 begin_ms;
    qint64 end_ms;      // exclusive
    qint64 midnight_ms; // at which the wall clock, running so, would have shown 00:00:00
    bool isDayEnd;      // its end is the end of the local date

    // The part of moment's stretch from moment on.
    [[nodiscard]] static Stretch From(qint64 moment_ms);
};

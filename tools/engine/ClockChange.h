#pragma once

#include <QtGlobal>

#include <vector>

// A change of the difference between local time and UTC, as where summer time begins or ends.
struct ClockChange
{
    qint64 moment_ms; // since 1970-01-01 00:00:00 UTC: the first that shows the new time
    qint64 shift_s;   // by how much the clocks are put forward; negative: back

    // Those from from_ms on and before until_ms, by the rules of the process's time zone.
    [[nodiscard]] static std::vector<ClockChange> Between(qint64 from_ms, qint64 until_ms);
};

#pragma once

#include <QtGlobal>

#include <cstdint>

// When a start was due that the clock on the wall has passed.
struct PastStart
{
    // Of a date on which the clocks are put back.
    static constexpr qint64 LONGEST_DAY_MS = 25LL * 3600 * 1000;

    qint64 moment_ms; // since 1970-01-01 00:00:00 UTC; of a time that the clocks left out, when they were put forward
    bool isLeftOut;

    // due_s: by the clock on the wall, as StartIndex counts; of a time that comes twice, the one that has just passed
    // counts. now_ms: what the Clock shows now.
    [[nodiscard]] static PastStart At(std::int64_t due_s, qint64 now_ms);
};

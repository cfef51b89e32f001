#pragma once

#include "Pcm.h"

#include <optional>
#include <vector>

// Tells when a frame of a stream was heard, from the moments at which the stream's blocks came. A block never comes
// early, but late when the machine is busy: the earliest of some seconds tell how frames and time go together, far
// better than the block that has the frame.
class Arrivals final
{
public:
    // A block begins with that frame, which was due when the block came. Moments are microseconds since 1970.
    void Add(qint64 frame, qint64 came_us);

    // The frames from here on are of another output: nothing is to be learnt for them from those before.
    void Break() { ++m_run; }

    // By the earliest blocks of a few seconds around it; nothing where no block came.
    [[nodiscard]] std::optional<qint64> LineAt_us(qint64 frame) const;

    // By the block that has it alone: when it really came.
    [[nodiscard]] std::optional<qint64> ArrivalAt_us(qint64 frame) const;

private:
    struct Block
    {
        qint64 frame;
        qint64 came_us;
        int run;
    };
    [[nodiscard]] std::vector<Block>::const_iterator BlockOf(qint64 frame) const;

    std::vector<Block> m_blocks;
    int m_run = 0;
};

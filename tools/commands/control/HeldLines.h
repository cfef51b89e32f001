#pragma once

#include "engine/ScheduleLine.h"

#include <QString>

#include <vector>

// How much of a schedule the daemon takes.
struct HeldLines
{
    int taken = 0;
    int rejected = 0;

    [[nodiscard]] static HeldLines Of(const std::vector<ScheduleLine>& lines);

    // "/opt/ozna/data/schedule/summer.csv: 12 taken, 1 rejected".
    [[nodiscard]] QString Words(const QString& path) const;
};

#pragma once

#include <array>
#include <cstddef>
#include <vector>

// Puts bars that overlap side by side.
namespace Lanes
{

// Where a bar begins and ends, in rows.
struct Extent
{
    double begin;
    double end;
};

// Of a bar, in each layout that has the same lanes.
inline constexpr size_t LAYOUTS = 2;
using Bar = std::array<Extent, LAYOUTS>;

// The least height of a bar, so that a short one can be seen and hit.
inline constexpr double LEAST_LENGTH = 0.25;

// The lane of each bar, counted from 0: the first one that is free in all layouts. bars: in the order of their
// beginnings.
[[nodiscard]] std::vector<int> Assign(const std::vector<Bar>& bars);

} // namespace Lanes

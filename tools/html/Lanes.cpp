#include "Lanes.h"

#include <algorithm>

std::vector<int> Lanes::Assign(const std::vector<Bar>& bars)
{
    std::vector<int> lanes;
    lanes.reserve(bars.size());
    std::vector<double> ends;
    for (const Bar& bar : bars)
    {
        auto lane = std::ranges::find_if(ends, [&](double end) { return end <= bar.begin; });
        if (lane == ends.end())
            lane = ends.insert(ends.end(), bar.begin);
        *lane = std::max(bar.end, bar.begin + LEAST_LENGTH);
        lanes.push_back(static_cast<int>(lane - ends.begin()));
    }
    return lanes;
}

#include "Lanes.h"

#include <algorithm>

namespace
{

using Ends = std::array<double, Lanes::LAYOUTS>;

bool IsFree(const Ends& ends, const Lanes::Bar& bar)
{
    return std::ranges::equal(ends, bar, [](double end, const Lanes::Extent& extent) { return end <= extent.begin; });
}

} // namespace

std::vector<int> Lanes::Assign(const std::vector<Bar>& bars)
{
    std::vector<int> lanes;
    lanes.reserve(bars.size());
    std::vector<Ends> ends;
    for (const Bar& bar : bars)
    {
        auto lane = std::ranges::find_if(ends, [&](const Ends& each) { return IsFree(each, bar); });
        if (lane == ends.end())
            lane = ends.insert(ends.end(), Ends{});
        std::ranges::transform(bar, lane->begin(),
                               [](const Extent& extent) { return std::max(extent.end, extent.begin + LEAST_LENGTH); });
        lanes.push_back(static_cast<int>(lane - ends.begin()));
    }
    return lanes;
}

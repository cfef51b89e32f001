#include "Arrivals.h"

#include <algorithm>

namespace
{

constexpr qint64 AROUND = qint64{3} * Pcm::RATE; // a card's clock slides by less than 1 ms in that time

} // namespace

void Arrivals::Add(qint64 frame, qint64 came_us)
{
    m_blocks.push_back({frame, came_us, m_run});
}

std::vector<Arrivals::Block>::const_iterator Arrivals::BlockOf(qint64 frame) const
{
    const auto behind = std::ranges::upper_bound(m_blocks, frame, {}, &Block::frame);
    return behind == m_blocks.begin() ? m_blocks.end() : std::prev(behind);
}

std::optional<qint64> Arrivals::LineAt_us(qint64 frame) const
{
    const auto own = BlockOf(frame);
    if (own == m_blocks.end())
        return {};
    // When the frame would have been due by a block.
    const auto due_us = [frame](const Block& block) {
        return block.came_us + std::llround(Pcm::Microseconds(frame - block.frame));
    };
    qint64 earliest_us = due_us(*own);
    const auto first = std::ranges::lower_bound(m_blocks, frame - AROUND, {}, &Block::frame);
    for (auto block = first; block != m_blocks.end() && block->frame <= frame + AROUND; ++block)
    {
        if (block->run == own->run)
            earliest_us = std::min(earliest_us, due_us(*block));
    }
    return earliest_us;
}

std::optional<qint64> Arrivals::ArrivalAt_us(qint64 frame) const
{
    const auto own = BlockOf(frame);
    if (own == m_blocks.end())
        return {};
    return own->came_us + std::llround(Pcm::Microseconds(frame - own->frame));
}

#include "Onsets.h"

#include <algorithm>
#include <cstdlib>

Onsets::Onsets(double threshold, qint64 hold)
    : m_threshold(static_cast<int>(std::lround(threshold * Pcm::FULL_SCALE)))
    , m_hold(hold)
{
}

void Onsets::Feed(std::span<const Pcm::Sample> samples)
{
    for (size_t at = 0; at + Pcm::CHANNELS <= samples.size(); at += Pcm::CHANNELS, ++m_frames)
    {
        const std::span<const Pcm::Sample> frame = samples.subspan(at, Pcm::CHANNELS);
        if (std::ranges::any_of(frame, [this](int sample) { return std::abs(sample) >= m_threshold; }))
        {
            if (!m_sounding)
                m_sounding = Sound{m_frames, m_frames};
            m_sounding->end = m_frames + 1;
        }
        else if (m_sounding && m_frames - m_sounding->end >= m_hold)
        {
            m_ended.push_back(*m_sounding);
            m_sounding.reset();
        }
    }
}

std::vector<Onsets::Sound> Onsets::All() const
{
    std::vector<Sound> sounds = m_ended;
    if (m_sounding)
        sounds.push_back(*m_sounding);
    return sounds;
}

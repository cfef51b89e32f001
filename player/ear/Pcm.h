#pragma once

#include <QtGlobal>

#include <cmath>
#include <cstdint>
#include <numeric>
#include <span>

// Samples as the player hands them out and as the ear hears them: signed, 16 bits, interleaved.
namespace Pcm
{

inline constexpr int RATE = 48000; // frames a second; a frame is a sample of each channel
inline constexpr int CHANNELS = 2;
inline constexpr qint64 US_PER_S = 1'000'000;

using Sample = std::int16_t;
inline constexpr double FULL_SCALE = 32767;

// How long so many frames sound.
[[nodiscard]] inline constexpr double Microseconds(qint64 frames)
{
    return static_cast<double>(frames) * US_PER_S / RATE;
}

// The root of the mean square, 0 for silence, 1 for a square wave of full scale. 0 of nothing.
[[nodiscard]] inline double Level(std::span<const Sample> samples)
{
    const double sum = std::accumulate(samples.begin(), samples.end(), 0.0, [](double before, Sample sample) {
        return before + static_cast<double>(sample) * sample;
    });
    return samples.empty() ? 0 : std::sqrt(sum / static_cast<double>(samples.size())) / FULL_SCALE;
}

} // namespace Pcm

#pragma once

#include <QtGlobal>

#include <algorithm>
#include <limits>

// The one form that sound has inside the player: 32-bit floats, interleaved. A frame is one sample of each channel.
namespace Frames
{

inline constexpr int RATE = 48000;
inline constexpr int CHANNELS = 2;
inline constexpr qint64 NS_PER_MS = 1'000'000;
// No frame is farther from the moment at which it is heard, whatever a device says of itself.
inline constexpr qint64 MOST_UNDER_WAY_MS = 2'000;

// Index of a frame's first sample, and number of the samples of so many frames.
constexpr qsizetype ToSamples(qint64 frames)
{
    return static_cast<qsizetype>(frames) * CHANNELS;
}

constexpr qint64 FromMs(qint64 time_ms)
{
    return time_ms * (RATE / 1000);
}

constexpr qint64 ToNs(qint64 frames)
{
    return frames * NS_PER_MS / (RATE / 1000);
}

// To the nearest frame. What is longer than MOST_NS, either side of zero, is taken for that.
inline constexpr qint64 MOST_NS = std::numeric_limits<qint64>::max() / (2 * RATE / 1000);
constexpr qint64 FromNs(qint64 time_ns)
{
    time_ns = std::clamp(time_ns, -MOST_NS, MOST_NS);
    const qint64 half = time_ns < 0 ? -NS_PER_MS / 2 : NS_PER_MS / 2;
    return (time_ns * (RATE / 1000) + half) / NS_PER_MS;
}

} // namespace Frames

#pragma once

#include "Pcm.h"

#include <vector>

// A gong of our own making, computed, the same each time. It begins at once at its loudest, so that where it begins can
// be told to the sample, and has died away at its end.
namespace Gong
{

inline constexpr qint64 LENGTH_MS = 1500;

// All of it, or the first so many milliseconds of it, faded out. Interleaved, Pcm::RATE and Pcm::CHANNELS. peak: of
// full scale.
[[nodiscard]] std::vector<Pcm::Sample> Samples(qint64 length_ms = LENGTH_MS, double peak = 0.7);

} // namespace Gong

#include "Gong.h"

#include <algorithm>
#include <array>
#include <numbers>
#include <numeric>

namespace
{

// A bell's partials are no multiples of its lowest one, and the higher ones die away sooner.
struct Partial
{
    double frequency_hz;
    double part;
    double decay_s; // in which it falls to a third
};
constexpr std::array PARTIALS{
    Partial{330, 0.40, 0.45},  Partial{526, 0.25, 0.35},  Partial{793, 0.18, 0.25},
    Partial{1190, 0.10, 0.18}, Partial{1724, 0.07, 0.10},
};
constexpr qint64 FADE_MS = 50;
constexpr qint64 MS_PER_S = 1000;

// From 0 to 1. All partials begin at the top of their wave.
double Wave(double time_s)
{
    return std::accumulate(PARTIALS.begin(), PARTIALS.end(), 0.0, [time_s](double sum, const Partial& partial) {
        return sum + partial.part * std::exp(-time_s / partial.decay_s) *
                         std::cos(2 * std::numbers::pi * partial.frequency_hz * time_s);
    });
}

} // namespace

std::vector<Pcm::Sample> Gong::Samples(qint64 length_ms, double peak)
{
    const qint64 frames = length_ms * Pcm::RATE / MS_PER_S;
    const qint64 fade = std::min(frames, FADE_MS * Pcm::RATE / MS_PER_S);
    std::vector<Pcm::Sample> samples;
    samples.reserve(static_cast<size_t>(frames * Pcm::CHANNELS));
    for (qint64 frame = 0; frame < frames; ++frame)
    {
        const double faded = std::min(1.0, static_cast<double>(frames - frame) / static_cast<double>(fade));
        const double wave = Wave(static_cast<double>(frame) / Pcm::RATE) * faded * peak;
        samples.insert(samples.end(), Pcm::CHANNELS, static_cast<Pcm::Sample>(std::lround(wave * Pcm::FULL_SCALE)));
    }
    return samples;
}

#pragma once

#include "Pcm.h"

#include <optional>
#include <vector>

// Finds where each sound begins and ends in a stream of frames, which comes in pieces of any length. A sound begins
// with the first frame in which a channel reaches the threshold, and ends with the last such frame before a silence of
// the hold: what is quieter, or shorter apart, is not told from it.
class Onsets final
{
public:
    struct Sound
    {
        qint64 begin; // its first frame, counted from the stream's first one
        qint64 end;   // the frame behind its last one
        bool operator==(const Sound&) const = default;
    };

    static constexpr double THRESHOLD = 0.03; // of full scale: above what a lossy encoder smears ahead of an attack
    static constexpr qint64 HOLD = Pcm::RATE / 10;

    explicit Onsets(double threshold = THRESHOLD, qint64 hold = HOLD);

    // Whole frames of Pcm::CHANNELS samples each.
    void Feed(std::span<const Pcm::Sample> samples);

    // The sounds that have ended, the earliest first.
    [[nodiscard]] const std::vector<Sound>& Ended() const { return m_ended; }

    // The one that has begun and not ended: its end is the last loud frame so far.
    [[nodiscard]] const std::optional<Sound>& Sounding() const { return m_sounding; }

    // Both.
    [[nodiscard]] std::vector<Sound> All() const;

    // The frames fed so far.
    [[nodiscard]] qint64 Frames() const { return m_frames; }

private:
    const int m_threshold;
    const qint64 m_hold;
    qint64 m_frames = 0;
    std::optional<Sound> m_sounding;
    std::vector<Sound> m_ended;
};

#pragma once

#include "SoundMaker.h"
#include "sound/Feed.h"
#include "sound/Ramp.h"

#include <memory>
#include <optional>

// One piece in the mixer. Guarded by it.
class Voice final
{
public:
    struct Setup
    {
        SoundMaker::Id id = 0;
        Piece::Place place = Piece::Place::MESSAGE;
        std::shared_ptr<Feed> feed;
        std::optional<qint64> due_ns; // of the wall clock; at once without it
        double volume = 100;
    };

    enum class State
    {
        WAITING,
        SOUNDING,
        FADING,
        OVER,
    };

    explicit Voice(Setup setup);

    [[nodiscard]] SoundMaker::Id Id() const { return m_setup.id; }
    [[nodiscard]] Piece::Place Place() const { return m_setup.place; }
    [[nodiscard]] State Now() const { return m_state; }
    [[nodiscard]] bool IsHeard() const { return m_state == State::SOUNDING || m_state == State::FADING; }

    // In how many frames it begins, when that is known; 0 for now or earlier. heard_ns: of the frame that comes now.
    [[nodiscard]] std::optional<qint64> BeginsIn(qint64 heard_ns) const;

    void Begin();
    // Ends with a short fade, or at once where nothing is heard of it.
    void Fade();
    void SetVolume(double percent);
    // What is left of it beside a message, 0 to 1.
    void Duck(double gain, qint64 frames);

    // Adds so many frames of it to what is there. Returns how many there were until it ended, or count.
    qint64 AddTo(float* frames, qint64 count);

private:
    [[nodiscard]] bool IsPaused() const;

    Setup m_setup;
    State m_state = State::WAITING;
    Ramp m_volume;
    Ramp m_duck{1};
    Ramp m_fade{1};
};

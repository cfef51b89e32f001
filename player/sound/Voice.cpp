#include "sound/Voice.h"

#include "sound/Frames.h"

#include <algorithm>
#include <array>

namespace
{

constexpr qint64 FADE = Frames::FromMs(30);
constexpr qint64 VOLUME_RAMP = Frames::FromMs(50);
constexpr qint64 PART = Frames::FromMs(10);

double ToGain(double percent)
{
    return std::clamp(percent, 0.0, 100.0) / 100;
}

} // namespace

Voice::Voice(Setup setup)
    : m_setup(std::move(setup))
    , m_volume(ToGain(m_setup.volume))
{
}

std::optional<qint64> Voice::BeginsIn(qint64 heard_ns) const
{
    if (m_state != State::WAITING || !m_setup.feed->IsReady())
        return std::nullopt;
    if (!m_setup.due_ns || *m_setup.due_ns <= heard_ns)
        return 0;
    return Frames::FromNs(*m_setup.due_ns - heard_ns);
}

void Voice::Begin()
{
    m_state = State::SOUNDING;
}

void Voice::Fade()
{
    if (m_state == State::WAITING || IsPaused())
        m_state = State::OVER;
    if (m_state != State::SOUNDING)
        return;
    m_state = State::FADING;
    m_fade.MoveTo(0, FADE);
}

void Voice::SetVolume(double percent)
{
    m_volume.MoveTo(ToGain(percent), m_state == State::WAITING ? 0 : VOLUME_RAMP);
}

void Voice::Duck(double gain, qint64 frames)
{
    m_duck.MoveTo(gain, m_state == State::WAITING ? 0 : frames);
}

bool Voice::IsPaused() const
{
    return m_setup.place == Piece::Place::PLAYLIST && m_duck.Target() == 0 && m_duck.Left() == 0;
}

qint64 Voice::AddTo(float* frames, qint64 count)
{
    std::array<float, Frames::ToSamples(PART)> part;
    qint64 done = 0;
    while (done < count && IsHeard() && !IsPaused())
    {
        qint64 size = std::min(count - done, PART);
        // A playlist that is paused goes on with the frame behind the one at which the ramp reached nothing.
        if (m_setup.place == Piece::Place::PLAYLIST && m_duck.Target() == 0)
            size = std::min(size, m_duck.Left());
        if (m_state == State::FADING)
            size = std::min(size, m_fade.Left());
        const qint64 got = m_setup.feed->Read(part.data(), size);
        const bool isOver = got < size && m_setup.feed->IsOver();
        std::fill(part.begin() + Frames::ToSamples(got), part.end(), 0.0F);
        for (qint64 frame = 0; frame < size; ++frame)
        {
            const auto gain = static_cast<float>(m_volume.Next() * m_duck.Next() * m_fade.Next());
            for (qint64 channel = 0; channel < Frames::CHANNELS; ++channel)
                frames[Frames::ToSamples(done + frame) + channel] +=
                    gain * part[static_cast<std::size_t>(Frames::ToSamples(frame) + channel)];
        }
        done += isOver ? got : size;
        if (isOver || (m_state == State::FADING && m_fade.Left() == 0))
            m_state = State::OVER;
    }
    return m_state == State::OVER ? done : count;
}

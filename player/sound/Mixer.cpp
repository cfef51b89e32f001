#include "sound/Mixer.h"

#include "sound/Frames.h"

#include <algorithm>

namespace
{

constexpr qint64 DUCK_RAMP = Frames::FromMs(200);
constexpr qint64 MASTER_RAMP = Frames::FromMs(50);

} // namespace

Mixer::Mixer(Settings settings, Tell tell)
    : m_duckGain(std::clamp(settings.duck_percent, 0.0, 100.0) / 100)
    , m_offset_ns(settings.offset_ns)
    , m_tell(std::move(tell))
{
}

void Mixer::Add(Voice::Setup setup)
{
    if (setup.due_ns)
        *setup.due_ns += m_offset_ns;
    const std::lock_guard lock(m_mutex);
    m_voices.emplace_back(std::move(setup));
}

Voice* Mixer::Find(SoundMaker::Id id)
{
    const auto voice = std::find_if(m_voices.begin(), m_voices.end(), [id](const Voice& v) { return v.Id() == id; });
    return voice == m_voices.end() ? nullptr : &*voice;
}

void Mixer::Stop(SoundMaker::Id id)
{
    const std::lock_guard lock(m_mutex);
    if (Voice* voice = Find(id))
        voice->Fade();
}

void Mixer::Remove(SoundMaker::Id id)
{
    // cppcheck-suppress variableScope
    Voices removed; // let go when the mixer is free again
    const std::lock_guard lock(m_mutex);
    const auto voice = std::find_if(m_voices.begin(), m_voices.end(), [id](const Voice& v) { return v.Id() == id; });
    if (voice != m_voices.end())
        removed.splice(removed.end(), m_voices, voice);
}

void Mixer::SetVolume(SoundMaker::Id id, double percent)
{
    const std::lock_guard lock(m_mutex);
    if (Voice* voice = Find(id))
        voice->SetVolume(percent);
}

void Mixer::SetMasterVolume(double percent)
{
    const std::lock_guard lock(m_mutex);
    m_master.MoveTo(std::clamp(percent, 0.0, 100.0) / 100, MASTER_RAMP);
}

qint64 Mixer::Mixed() const
{
    const std::lock_guard lock(m_mutex);
    return m_mixed;
}

void Mixer::Mix(float* frames, qint64 count, qint64 heard_ns)
{
    // cppcheck-suppress variableScope
    Voices over; // let go when the mixer is free again
    std::vector<Event> events;
    {
        const std::lock_guard lock(m_mutex);
        std::fill_n(frames, Frames::ToSamples(count), 0.0F);
        qint64 done = 0;
        while (done < count)
        {
            const qint64 now_ns = heard_ns + Frames::ToNs(done);
            BeginVoices(now_ns);
            DuckFor(now_ns);
            const qint64 part = UntilNextStart(now_ns, count - done);
            Render(frames + Frames::ToSamples(done), part, now_ns);
            done += part;
        }
        Finish(frames, count);
        m_mixed += count;
        events.swap(m_events);
        over.swap(m_over);
    }
    if (!events.empty())
        m_tell(std::move(events));
}

// A playlist that would be paused at once begins when it is not.
bool Mixer::MayBegin(const Voice& voice) const
{
    const auto isMessage = [](const Voice& v) {
        return v.Place() == Piece::Place::MESSAGE && v.Now() == Voice::State::SOUNDING;
    };
    return voice.Place() != Piece::Place::PLAYLIST || m_duckGain > 0 ||
           std::none_of(m_voices.begin(), m_voices.end(), isMessage);
}

void Mixer::BeginVoices(qint64 heard_ns)
{
    for (Voice& voice : m_voices)
    {
        if (voice.BeginsIn(heard_ns) != 0 || !MayBegin(voice))
            continue;
        TakeOver(voice);
        voice.Begin();
        m_events.push_back({Event::Kind::BEGUN, voice.Id(), heard_ns});
    }
}

void Mixer::TakeOver(const Voice& newcomer)
{
    for (Voice& voice : m_voices)
    {
        if (voice.Place() != newcomer.Place() || !voice.IsHeard())
            continue;
        voice.Fade();
    }
}

void Mixer::DuckFor(qint64 heard_ns)
{
    std::optional<qint64> messageIn;
    for (const Voice& voice : m_voices)
    {
        if (voice.Place() != Piece::Place::MESSAGE)
            continue;
        const std::optional<qint64> in = voice.Now() == Voice::State::SOUNDING ? 0 : voice.BeginsIn(heard_ns);
        if (in && *in <= DUCK_RAMP)
            messageIn = std::min(*in, messageIn.value_or(*in));
    }
    // A message that is known ahead finds the others quiet already.
    const qint64 ramp = messageIn && *messageIn > 0 ? *messageIn : DUCK_RAMP;
    for (Voice& voice : m_voices)
    {
        if (voice.Place() != Piece::Place::MESSAGE)
            voice.Duck(messageIn ? m_duckGain : 1, ramp);
    }
}

qint64 Mixer::UntilNextStart(qint64 heard_ns, qint64 most) const
{
    for (const Voice& voice : m_voices)
    {
        const std::optional<qint64> in = voice.BeginsIn(heard_ns);
        if (in && *in > 0)
            most = std::min(most, *in);
    }
    return most;
}

void Mixer::Render(float* frames, qint64 count, qint64 heard_ns)
{
    for (auto next = m_voices.begin(); next != m_voices.end();)
    {
        const auto voice = next++;
        if (voice->Now() == Voice::State::WAITING)
            continue;
        const qint64 length = voice->AddTo(frames, count);
        if (voice->Now() != Voice::State::OVER)
            continue;
        m_events.push_back({Event::Kind::ENDED, voice->Id(), heard_ns + Frames::ToNs(length)});
        m_over.splice(m_over.end(), m_voices, voice);
    }
}

void Mixer::Finish(float* frames, qint64 count)
{
    for (qint64 frame = 0; frame < count; ++frame)
    {
        const auto gain = static_cast<float>(m_master.Next());
        for (qint64 channel = 0; channel < Frames::CHANNELS; ++channel)
        {
            float& sample = frames[Frames::ToSamples(frame) + channel];
            sample = std::clamp(sample * gain, -1.0F, 1.0F);
        }
    }
}

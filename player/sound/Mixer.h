#pragma once

#include "sound/Ramp.h"
#include "sound/Voice.h"

#include <functional>
#include <list>
#include <mutex>
#include <vector>

// All that sounds, added up, and every start to the frame: the output tells for each block when it is heard, so a
// voice begins by the wall clock of the last moment before its sound leaves for the output, however that clock was set
// meanwhile. Mix is called by the output's thread, all others by the owner's; nothing waits.
class Mixer final
{
public:
    struct Event
    {
        enum class Kind
        {
            BEGUN,
            ENDED,
        };
        Kind kind;
        SoundMaker::Id id;
        qint64 heard_ns; // on the wall clock
    };
    using Tell = std::function<void(std::vector<Event>)>; // by the thread of the output

    struct Settings
    {
        double duck_percent;
        qint64 offset_ns; // every start is moved by it
    };
    Mixer(Settings settings, Tell tell);
    Q_DISABLE_COPY_MOVE(Mixer)

    void Add(Voice::Setup setup);
    // The voice ends with a fade, and is told as ended by Mix; nothing is told of a voice that is removed.
    void Stop(SoundMaker::Id id);
    void Remove(SoundMaker::Id id);
    void SetVolume(SoundMaker::Id id, double percent);
    void SetMasterVolume(double percent);

    // Fills the block. heard_ns: when its first frame is heard, on the wall clock.
    void Mix(float* frames, qint64 count, qint64 heard_ns);

    // How many frames were mixed so far.
    [[nodiscard]] qint64 Mixed() const;

private:
    using Voices = std::list<Voice>;

    Voice* Find(SoundMaker::Id id);
    // The frames up to the next start; 0 when a voice begins now.
    [[nodiscard]] qint64 UntilNextStart(qint64 heard_ns, qint64 most) const;
    void BeginVoices(qint64 heard_ns);
    void TakeOver(const Voice& newcomer);
    void DuckFor(qint64 heard_ns);
    void Render(float* frames, qint64 count, qint64 heard_ns);
    void Finish(float* frames, qint64 count);
    [[nodiscard]] bool MayBegin(const Voice& voice) const;

    const double m_duckGain;
    const qint64 m_offset_ns;
    const Tell m_tell;
    mutable std::mutex m_mutex;
    Voices m_voices;
    Voices m_over; // told, and not let go yet
    Ramp m_master{1};
    std::vector<Event> m_events;
    qint64 m_mixed = 0;
};

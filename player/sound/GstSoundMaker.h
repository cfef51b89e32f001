#pragma once

#include "SoundMaker.h"
#include "SoundSettings.h"
#include "sound/Mailbox.h"
#include "sound/Mixer.h"
#include "sound/Output.h"
#include "sound/OutputAbsence.h"
#include "sound/Preparation.h"
#include "sound/SourceWorkers.h"

#include <functional>
#include <map>
#include <memory>

// Makes sound with GStreamer: a pipeline for each source, which decodes ahead, a mixer, and one output.
//
//   Decoder ─► FrameQueue ─► TrackFeed or LiveFeed ─► Voice ─► Mixer ─► OutputPipeline ─► the device
//   its own threads, 2 s ahead              the output's thread, as the device takes it
//
// In the owner's thread, a Preparation opens the sources of a piece, and Output sees to the device. What may wait for a
// file, a network or a device is done by Workers; what other threads have to tell comes through a Mailbox.
//
// A source knows nothing of the output and of time: it waits in its queue, whatever becomes of the device or the clock.
// Volumes, fades and starts are made behind the queue, so they are heard as soon as the device's own buffer allows.
class GstSoundMaker final : public SoundMaker
{
    Q_OBJECT
public:
    // Throws std::runtime_error when GStreamer cannot be used. Opens nothing yet.
    explicit GstSoundMaker(const SoundSettings& settings);
    ~GstSoundMaker() override;
    Q_DISABLE_COPY_MOVE(GstSoundMaker)

    [[nodiscard]] Id Play(const Piece& piece) override;
    void Stop(Id id) override;
    void SetVolume(Id id, double volume) override;
    void SetMasterVolume(double volume) override;

private:
    // A piece from its request to its end.
    struct Item
    {
        Piece piece;
        std::unique_ptr<Preparation> preparation; // none while what was mixed of it is lost
        bool isPrepared = false;
        bool isReadyTold = false;
        bool hadOutput = false;
        bool hasBegun = false; // is mixed
        qint64 begun_ns = 0;   // when its first frame is heard
        bool isHeard = false;
        bool isStopped = false;
        int losses = 0; // of what was on its way to the output
    };
    using Items = std::map<Id, Item>;

    void Prepare(Id id, Item& item);
    void Follow(Id id, const Preparation& preparation);
    void OnMixed(const std::vector<Mixer::Event>& events);
    void OnBegun(Id id, qint64 heard_ns);
    void OnEnded(Id id, qint64 heard_ns);
    void TellReady(Id id);
    void TellStarted(Id id);
    void AtMoment(Id id, qint64 heard_ns, std::function<void()> work);
    void LeavePreparation(Item& item);
    void End(Id id, const QString& reason);

    void OnOpened();
    void OnOutputFailed(const QString& reason);
    void OnOutputLost(const QString& reason);
    void TakeBack(Id id, Item& item);
    void EndWithoutOutput();
    // Ends those that the condition holds for.
    void EndAll(const std::function<bool(const Item&)>& condition, const QString& reason);

    const std::shared_ptr<Mailbox> m_mailbox;
    SourceWorkers m_sources;
    const std::shared_ptr<Mixer> m_mixer;
    Output m_output;
    Items m_items;
    Id m_last = 0;
    OutputAbsence m_absence;
};

#pragma once

#include "sound/GstHandle.h"
#include "sound/OutputFile.h"

#include <QString>

#include <functional>
#include <memory>
#include <mutex>

class Mixer;

// Silence that the output's own clock paces, into which the mixer puts what sounds, and the sink that was asked for.
// Used by one thread; each of its functions may wait for the device.
class OutputPipeline final
{
public:
    // output: as in SoundSettings. file: where sound in a file begins. lost: told once by a thread of the sound when
    // the output takes no more, with the reason. Throws std::runtime_error, with words, when there is no such output.
    OutputPipeline(const QString& output, OutputFile::Begin file, std::shared_ptr<Mixer> mixer,
                   std::function<void(const QString& reason)> lost);
    ~OutputPipeline();
    Q_DISABLE_COPY_MOVE(OutputPipeline)

    // Throws as the constructor does.
    void Start();

private:
    struct Descriptor
    {
        Descriptor() = default;
        ~Descriptor();
        Q_DISABLE_COPY_MOVE(Descriptor)
        int number = -1;
    };

    GstElement* Add(const char* factory);
    GstElement* AddSilence();
    GstElement* AddSink(const QString& output, OutputFile::Begin file, GstElement* convert, GstElement* form);
    void Fill(GstBuffer* buffer);
    [[nodiscard]] qint64 HeardAt_ns(GstClockTime running) const;
    void Lose(const QString& reason);

    static GstPadProbeReturn OnBuffer(GstPad* pad, GstPadProbeInfo* info, gpointer output);
    static GstBusSyncReply OnMessage(GstBus* bus, GstMessage* message, gpointer output);

    const std::shared_ptr<Mixer> m_mixer;
    const std::function<void(const QString&)> m_onLost;
    Descriptor m_file; // closed behind the pipeline, also where this object could not be made
    GstHandle<GstElement> m_pipeline;
    GstElement* m_sink = nullptr; // the pipeline's
    std::mutex m_lostMutex;
    QString m_lost;
    bool m_isStarted = false;
};

#pragma once

#include "sound/FrameQueue.h"
#include "sound/FullLength.h"
#include "sound/GstHandle.h"
#include "sound/Workers.h"

#include <QString>

#include <atomic>
#include <functional>
#include <memory>

// One source, decoded into a queue by a pipeline of its own, about two seconds ahead. A source that is not asked for
// frames holds what it has: it may wait for hours.
class Decoder final
{
public:
    enum class Kind
    {
        TRACK,   // the absolute path of a file
        STREAM,  // an address, rtsp or http
        CAPTURE, // "alsa:DEVICE" or "pulse:DEVICE"
    };

    // Told by threads of the sound, each at most once. failed comes instead of ended.
    struct Events
    {
        std::function<void()> primed; // the first frames are there
        std::function<void()> ended;  // everything is decoded; it still has to be played
        std::function<void(const QString& reason)> failed;
    };

    // Starts behind the call. Everything that may wait, the end of the pipeline included, is done by the workers, which
    // have to be there until then.
    static std::shared_ptr<Decoder> Open(Kind kind, const QString& source, Events events, Workers& workers);

    ~Decoder();
    Q_DISABLE_COPY_MOVE(Decoder)

    FrameQueue& Queue() { return m_queue; }

    // Whether what has ended was of a known length: what is live does not end, it breaks.
    [[nodiscard]] bool HasLength() const { return m_hasLength; }

private:
    Decoder(Kind kind, QString source, Events events);

    void Start();
    void Build();
    void Stop();
    GstElement* AddSource();
    GstElement* Add(const char* factory);
    void SetUpSink(GstElement* sink);

    bool Take(GstSample* sample);
    void OnEnd();
    void Fail(const QString& reason);

    static void OnPad(GstElement* source, GstPad* pad, gpointer decoder);
    static void OnNoMorePads(GstElement* source, gpointer decoder);
    static void OnSource(GstElement* bin, GstElement* source, gpointer decoder);
    static GstBusSyncReply OnMessage(GstBus* bus, GstMessage* message, gpointer decoder);

    const Kind m_kind;
    const QString m_source;
    const Events m_events;
    FrameQueue m_queue;
    FullLength m_length;
    GstHandle<GstElement> m_pipeline;
    GstElement* m_first = nullptr; // behind the source, the pipeline's
    std::atomic<bool> m_isPrimed = false;
    std::atomic<bool> m_isOver = false;
    std::atomic<bool> m_hasLength = false;
};

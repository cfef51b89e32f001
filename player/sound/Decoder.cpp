#include "sound/Decoder.h"

#include "sound/Frames.h"
#include "sound/GstText.h"

#include <QFile>
#include <QFileInfo>

#include <gst/app/gstappsink.h>
#include <gst/audio/audio.h>

#include <algorithm>
#include <stdexcept>

namespace
{

constexpr qint64 AHEAD = Frames::FromMs(2000);
// With less a busy machine could break the first sound.
constexpr qint64 PRIMED = Frames::FromMs(100);
constexpr guint RTSP_LATENCY_MS = 300;
constexpr guint HTTP_TIMEOUT_S = 5;
constexpr qint64 CAPTURE_BUFFER_US = 100'000;
constexpr qint64 CAPTURE_STEP_US = 10'000;

// What a device or a live server sends does not wait.
FrameQueue::WhenFull WhenFullOf(Decoder::Kind kind, const QString& source)
{
    return kind == Decoder::Kind::CAPTURE || source.startsWith(QLatin1String("rtsp"))
               ? FrameQueue::WhenFull::DROP_OLDEST
               : FrameQueue::WhenFull::WAIT;
}

void SetIfThere(GstElement* element, const char* property, guint value)
{
    if (g_object_class_find_property(G_OBJECT_GET_CLASS(element), property) != nullptr)
        g_object_set(element, property, value, nullptr);
}

} // namespace

Decoder::Decoder(Kind kind, QString source, Events events)
    : m_kind(kind)
    , m_source(std::move(source))
    , m_events(std::move(events))
    , m_queue(AHEAD, WhenFullOf(kind, m_source))
{
}

Decoder::~Decoder() = default;

std::shared_ptr<Decoder> Decoder::Open(Kind kind, const QString& source, Events events, Workers& workers)
{
    // The last user may be the mixer, which cannot wait for a pipeline to end.
    const auto close = [run = workers.MakeRunner()](Decoder* decoder) {
        decoder->m_queue.Close();
        run([decoder] {
            decoder->Stop();
            delete decoder;
        });
    };
    std::shared_ptr<Decoder> decoder(new Decoder(kind, source, std::move(events)), close);
    workers.Run([weak = std::weak_ptr(decoder)] {
        if (const auto strong = weak.lock())
            strong->Start();
    });
    return decoder;
}

void Decoder::Start()
{
    try
    {
        Build();
    }
    catch (const std::exception& error)
    {
        return Fail(QString::fromLocal8Bit(error.what()));
    }
    if (gst_element_set_state(m_pipeline.get(), GST_STATE_PLAYING) == GST_STATE_CHANGE_FAILURE)
        Fail(QStringLiteral("it cannot be opened"));
}

void Decoder::Stop()
{
    if (m_pipeline != nullptr)
        gst_element_set_state(m_pipeline.get(), GST_STATE_NULL);
}

GstElement* Decoder::Add(const char* factory)
{
    GstElement* element = gst_element_factory_make(factory, nullptr);
    if (element == nullptr)
        throw std::runtime_error(std::string("GStreamer has no ") + factory);
    gst_bin_add(GST_BIN(m_pipeline.get()), element);
    return element;
}

void Decoder::Build()
{
    m_pipeline.reset(GST_ELEMENT(gst_object_ref_sink(gst_pipeline_new(nullptr))));
    const GstHandle<GstBus> bus(gst_element_get_bus(m_pipeline.get()));
    gst_bus_set_sync_handler(bus.get(), OnMessage, this, nullptr);
    m_first = Add("audioconvert");
    GstElement* resample = Add("audioresample");
    m_length.Watch(resample);
    GstElement* sink = Add("appsink");
    SetUpSink(sink);
    if (!gst_element_link_many(m_first, resample, sink, nullptr))
        throw std::runtime_error("the decoder cannot be joined");
    GstElement* source = AddSource();
    if (m_kind == Kind::CAPTURE && !gst_element_link(source, m_first))
        throw std::runtime_error("the capture device cannot be joined");
}

GstElement* Decoder::AddSource()
{
    if (m_kind == Kind::CAPTURE)
    {
        const QString kind = m_source.section(QLatin1Char(':'), 0, 0);
        const QByteArray device = m_source.section(QLatin1Char(':'), 1).toUtf8();
        if (kind != QLatin1String("alsa") && kind != QLatin1String("pulse"))
            throw std::runtime_error("there is no such kind of input: " + m_source.toStdString());
        GstElement* source = Add(kind == QLatin1String("alsa") ? "alsasrc" : "pulsesrc");
        g_object_set(source, "provide-clock", FALSE, "buffer-time", CAPTURE_BUFFER_US, "latency-time", CAPTURE_STEP_US,
                     nullptr);
        if (!device.isEmpty())
            g_object_set(source, "device", device.constData(), nullptr);
        return source;
    }
    QByteArray address = m_source.toUtf8();
    if (m_kind == Kind::TRACK)
    {
        // A pipe or a device in the place of a file would be waited for.
        if (!QFileInfo(m_source).isFile())
            throw std::runtime_error("there is no such file");
        GError* error = nullptr;
        const GlibHandle<char> uri(gst_filename_to_uri(QFile::encodeName(m_source).constData(), &error));
        const GlibHandle<GError> owned(error);
        if (uri == nullptr)
            throw std::runtime_error(error != nullptr ? error->message : "it is no name of a file");
        address = uri.get();
    }
    GstElement* source = Add("uridecodebin");
    const GstHandle<GstCaps> sound(gst_caps_from_string("audio/x-raw"));
    g_object_set(source, "uri", address.constData(), "caps", sound.get(), "expose-all-streams", FALSE, nullptr);
    g_signal_connect(source, "pad-added", G_CALLBACK(OnPad), this);
    g_signal_connect(source, "no-more-pads", G_CALLBACK(OnNoMorePads), this);
    g_signal_connect(source, "source-setup", G_CALLBACK(OnSource), this);
    return source;
}

void Decoder::SetUpSink(GstElement* sink)
{
    const GstHandle<GstCaps> caps(
        gst_caps_new_simple("audio/x-raw", "format", G_TYPE_STRING, GST_AUDIO_NE(F32), "rate", G_TYPE_INT, Frames::RATE,
                            "channels", G_TYPE_INT, Frames::CHANNELS, "layout", G_TYPE_STRING, "interleaved", nullptr));
    // The queue of frames says how far ahead it decodes, and the mixer when a frame is heard.
    g_object_set(sink, "caps", caps.get(), "sync", FALSE, "async", FALSE, "max-buffers", 1U, "enable-last-sample",
                 FALSE, "wait-on-eos", FALSE, nullptr);
    GstAppSinkCallbacks callbacks = {};
    callbacks.eos = [](GstAppSink* /*sink*/, gpointer decoder) { static_cast<Decoder*>(decoder)->OnEnd(); };
    callbacks.new_sample = [](GstAppSink* appSink, gpointer decoder) {
        const GstHandle<GstSample> sample(gst_app_sink_pull_sample(appSink));
        if (sample == nullptr)
            return GST_FLOW_EOS;
        return static_cast<Decoder*>(decoder)->Take(sample.get()) ? GST_FLOW_OK : GST_FLOW_FLUSHING;
    };
    gst_app_sink_set_callbacks(GST_APP_SINK(sink), &callbacks, this, nullptr);
}

bool Decoder::Take(GstSample* sample)
{
    GstMapInfo map;
    GstBuffer* buffer = gst_sample_get_buffer(sample);
    if (buffer == nullptr || !gst_buffer_map(buffer, &map, GST_MAP_READ))
    {
        Fail(QStringLiteral("a part of it cannot be read"));
        return false;
    }
    const auto* const frames = reinterpret_cast<const float*>(map.data);
    const auto given = static_cast<qint64>(map.size / sizeof(float) / Frames::CHANNELS);
    const qint64 count = std::min(given, m_length.Frames() - m_queue.Pushed());
    bool isWanted = true;
    // In parts: a block that does not fit waits for the mixer, which waits to be told.
    for (qint64 done = 0; isWanted && done < count; done += PRIMED)
    {
        isWanted = m_queue.Push(frames + Frames::ToSamples(done), std::min(PRIMED, count - done));
        if (isWanted && m_queue.Pushed() >= PRIMED && !m_isPrimed.exchange(true))
            m_events.primed();
    }
    gst_buffer_unmap(buffer, &map);
    return isWanted;
}

void Decoder::OnEnd()
{
    if (m_queue.Pushed() == 0)
        return Fail(QStringLiteral("there is no sound in it"));
    gint64 length = 0;
    m_hasLength = gst_element_query_duration(m_pipeline.get(), GST_FORMAT_TIME, &length) != FALSE && length > 0;
    m_queue.End();
    if (m_isOver.exchange(true))
        return;
    if (!m_isPrimed.exchange(true))
        m_events.primed();
    m_events.ended();
}

void Decoder::Fail(const QString& reason)
{
    m_queue.End();
    if (!m_isOver.exchange(true))
        m_events.failed(reason);
}

void Decoder::OnPad(GstElement* /*source*/, GstPad* pad, gpointer decoder)
{
    const auto self = static_cast<Decoder*>(decoder);
    const GstHandle<GstPad> first(gst_element_get_static_pad(self->m_first, "sink"));
    if (!gst_pad_is_linked(first.get()) && gst_pad_link(pad, first.get()) != GST_PAD_LINK_OK)
        self->Fail(QStringLiteral("its sound cannot be decoded"));
}

void Decoder::OnNoMorePads(GstElement* /*source*/, gpointer decoder)
{
    const auto self = static_cast<Decoder*>(decoder);
    const GstHandle<GstPad> first(gst_element_get_static_pad(self->m_first, "sink"));
    if (!gst_pad_is_linked(first.get()))
        self->Fail(QStringLiteral("there is no sound in it"));
}

void Decoder::OnSource(GstElement* /*bin*/, GstElement* source, gpointer /*decoder*/)
{
    const GstElementFactory* factory = gst_element_get_factory(source);
    const QByteArray name(factory != nullptr ? GST_OBJECT_NAME(factory) : "");
    if (name == "rtspsrc")
        SetIfThere(source, "latency", RTSP_LATENCY_MS);
    if (name == "souphttpsrc")
        SetIfThere(source, "timeout", HTTP_TIMEOUT_S);
}

GstBusSyncReply Decoder::OnMessage(GstBus* /*bus*/, GstMessage* message, gpointer decoder)
{
    if (GST_MESSAGE_TYPE(message) == GST_MESSAGE_ERROR)
        static_cast<Decoder*>(decoder)->Fail(GstText::ErrorOf(message));
    gst_message_unref(message);
    return GST_BUS_DROP;
}

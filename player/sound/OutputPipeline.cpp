#include "sound/OutputPipeline.h"

#include "sound/Frames.h"
#include "sound/GstText.h"
#include "sound/Mixer.h"
#include "sound/WallClock.h"

#include <gst/audio/audio.h>
#include <gst/base/gstbasesink.h>

#include <unistd.h>

#include <algorithm>
#include <stdexcept>

namespace
{

constexpr qint64 BLOCK = Frames::FromMs(10);
// How long a frame is under way: a busy machine may be that late without a hole. More than the device's own buffer.
constexpr GstClockTime LATENCY = 300 * GST_MSECOND;
constexpr qint64 DEVICE_BUFFER_US = 200'000;
constexpr qint64 DEVICE_STEP_US = 10'000;
constexpr qint64 DRIFT_TOLERANCE_US = 5'000;
// As users see it among the programs that sound.
constexpr const char* CLIENT_NAME = "ozna-player";
constexpr GstClockTime PATIENCE = GST_SECOND;
// Two clocks are read as one moment when both readings fit into this.
constexpr GstClockTime ONE_MOMENT = 20 * GST_USECOND;
constexpr int READINGS = 5;
constexpr qint64 MOST_UNDER_WAY_NS = Frames::MOST_UNDER_WAY_MS * Frames::NS_PER_MS;

} // namespace

OutputPipeline::OutputPipeline(const QString& output, OutputFile::Begin file, std::shared_ptr<Mixer> mixer,
                               std::function<void(const QString&)> lost)
    : m_mixer(std::move(mixer))
    , m_onLost(std::move(lost))
    , m_pipeline(GST_ELEMENT(gst_object_ref_sink(gst_pipeline_new(nullptr))))
{
    const GstHandle<GstBus> bus(gst_element_get_bus(m_pipeline.get()));
    gst_bus_set_sync_handler(bus.get(), OnMessage, this, nullptr);
    gst_pipeline_set_latency(GST_PIPELINE(m_pipeline.get()), LATENCY);
    GstElement* silence = AddSilence();
    GstElement* convert = Add("audioconvert");
    GstElement* form = Add("capsfilter");
    m_sink = AddSink(output, file, convert, form);
    if (!gst_element_link_many(silence, convert, Add("audioresample"), form, m_sink, nullptr))
        throw std::runtime_error("the output cannot be joined");
}

OutputPipeline::~OutputPipeline()
{
    gst_element_set_state(m_pipeline.get(), GST_STATE_NULL);
}

OutputPipeline::Descriptor::~Descriptor()
{
    if (number >= 0)
        close(number);
}

GstElement* OutputPipeline::Add(const char* factory)
{
    GstElement* element = gst_element_factory_make(factory, nullptr);
    if (element == nullptr)
        throw std::runtime_error(std::string("GStreamer has no ") + factory);
    gst_bin_add(GST_BIN(m_pipeline.get()), element);
    return element;
}

GstElement* OutputPipeline::AddSilence()
{
    GstElement* silence = Add("audiotestsrc");
    gst_util_set_object_arg(G_OBJECT(silence), "wave", "silence");
    g_object_set(silence, "is-live", TRUE, "samplesperbuffer", static_cast<int>(BLOCK), nullptr);
    const GstHandle<GstCaps> caps(
        gst_caps_new_simple("audio/x-raw", "format", G_TYPE_STRING, GST_AUDIO_NE(F32), "rate", G_TYPE_INT, Frames::RATE,
                            "channels", G_TYPE_INT, Frames::CHANNELS, "layout", G_TYPE_STRING, "interleaved", nullptr));
    GstElement* form = Add("capsfilter");
    g_object_set(form, "caps", caps.get(), nullptr);
    if (!gst_element_link(silence, form))
        throw std::runtime_error("the silence cannot be joined");
    const GstHandle<GstPad> pad(gst_element_get_static_pad(form, "src"));
    gst_pad_add_probe(pad.get(), GST_PAD_PROBE_TYPE_BUFFER, OnBuffer, this, nullptr);
    return form;
}

GstElement* OutputPipeline::AddSink(const QString& output, OutputFile::Begin file, GstElement* convert,
                                    GstElement* form)
{
    const QString kind = output.section(QLatin1Char(':'), 0, 0);
    const QString name = output.section(QLatin1Char(':'), 1);
    if (kind == QLatin1String("file"))
    {
        m_file.number = OutputFile::Open(name, file);
        // What is silent is to be silent in the file, too.
        gst_util_set_object_arg(G_OBJECT(convert), "dithering", "none");
        gst_util_set_object_arg(G_OBJECT(form), "caps", "audio/x-raw,format=S16LE,rate=48000,channels=2");
        GstElement* sink = Add("fdsink");
        g_object_set(sink, "fd", m_file.number, "sync", TRUE, nullptr);
        return sink;
    }
    if (kind != QLatin1String("pulse") && kind != QLatin1String("alsa"))
        throw std::runtime_error("there is no such kind of output: " + output.toStdString());
    const bool isPulse = kind == QLatin1String("pulse");
    GstElement* sink = Add(isPulse ? "pulsesink" : "alsasink");
    if (isPulse)
        g_object_set(sink, "client-name", CLIENT_NAME, nullptr);
    g_object_set(sink, "buffer-time", DEVICE_BUFFER_US, "latency-time", DEVICE_STEP_US, "drift-tolerance",
                 DRIFT_TOLERANCE_US, nullptr);
    if (!name.isEmpty())
        g_object_set(sink, "device", name.toUtf8().constData(), nullptr);
    return sink;
}

void OutputPipeline::Start()
{
    GstStateChangeReturn change = gst_element_set_state(m_pipeline.get(), GST_STATE_PLAYING);
    if (change == GST_STATE_CHANGE_ASYNC)
        change = gst_element_get_state(m_pipeline.get(), nullptr, nullptr, PATIENCE);
    // Not where a sink asks for it, in a thread that the end of the pipeline waits for. It is constant from here on.
    if (change == GST_STATE_CHANGE_SUCCESS && gst_bin_recalculate_latency(GST_BIN(m_pipeline.get())) == FALSE)
        throw std::runtime_error("its latency is not known");
    const std::lock_guard lock(m_lostMutex);
    if (change == GST_STATE_CHANGE_SUCCESS && m_lost.isEmpty())
        m_isStarted = true;
    else
        throw std::runtime_error(m_lost.isEmpty() ? "it does not start" : m_lost.toStdString());
}

GstPadProbeReturn OutputPipeline::OnBuffer(GstPad* /*pad*/, GstPadProbeInfo* info, gpointer output)
{
    GstBuffer* buffer = gst_buffer_make_writable(GST_PAD_PROBE_INFO_BUFFER(info));
    GST_PAD_PROBE_INFO_DATA(info) = buffer;
    static_cast<OutputPipeline*>(output)->Fill(buffer);
    return GST_PAD_PROBE_OK;
}

void OutputPipeline::Fill(GstBuffer* buffer)
{
    GstMapInfo map;
    if (!gst_buffer_map(buffer, &map, GST_MAP_WRITE))
        return;
    const auto count = static_cast<qint64>(map.size / sizeof(float) / Frames::CHANNELS);
    m_mixer->Mix(reinterpret_cast<float*>(map.data), count, HeardAt_ns(GST_BUFFER_PTS(buffer)));
    gst_buffer_unmap(buffer, &map);
    // Silence is marked as such, and elements may pass over it.
    gst_buffer_unset_flags(buffer, GST_BUFFER_FLAG_GAP);
}

// The time at which the frame of that running time is heard, on the wall clock. While this thread is held up between
// two readings they are not one moment: then it reads again. The clock of a device that takes sound without a pace runs
// away: what is due would never come.
qint64 OutputPipeline::HeardAt_ns(GstClockTime running) const
{
    const GstHandle<GstClock> clock(gst_element_get_clock(m_pipeline.get()));
    if (clock == nullptr)
        return WallClock::Now_ns();
    GstClockTime before = 0;
    GstClockTime after = 0;
    qint64 wall_ns = 0;
    for (int reading = 0; reading < READINGS; ++reading)
    {
        before = gst_clock_get_time(clock.get());
        wall_ns = WallClock::Now_ns();
        after = gst_clock_get_time(clock.get());
        if (after - before < ONE_MOMENT)
            break;
    }
    const GstClockTime heard =
        gst_element_get_base_time(m_pipeline.get()) + running + gst_base_sink_get_latency(GST_BASE_SINK(m_sink));
    const auto ahead_ns = static_cast<qint64>(heard) - static_cast<qint64>(before + (after - before) / 2);
    return wall_ns + std::clamp(ahead_ns, -MOST_UNDER_WAY_NS, MOST_UNDER_WAY_NS);
}

GstBusSyncReply OutputPipeline::OnMessage(GstBus* /*bus*/, GstMessage* message, gpointer output)
{
    auto* const self = static_cast<OutputPipeline*>(output);
    if (GST_MESSAGE_TYPE(message) == GST_MESSAGE_ERROR)
        self->Lose(GstText::ErrorOf(message));
    if (GST_MESSAGE_TYPE(message) == GST_MESSAGE_EOS)
        self->Lose(QStringLiteral("it has ended"));
    gst_message_unref(message);
    return GST_BUS_DROP;
}

void OutputPipeline::Lose(const QString& reason)
{
    const std::lock_guard lock(m_lostMutex);
    const bool isNews = m_lost.isEmpty();
    m_lost = reason;
    // Before it has started, who starts it tells.
    if (isNews && m_isStarted)
        m_onLost(reason);
}

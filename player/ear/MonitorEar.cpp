#include "MonitorEar.h"

#include <gst/gst.h>

#include <algorithm>

namespace
{

// Small blocks, because the server hands a block to its output when the output needs its first sample; and room for
// many, because a block that is lost on a busy machine moves all that follow.
constexpr const char* PIPELINE = "pulsesrc name=source buffer-time=1000000 latency-time=2000 provide-clock=false "
                                 "! audio/x-raw,format=S16LE,rate=48000,channels=2,layout=interleaved "
                                 "! fakesink name=ear sync=false signal-handoffs=true";
// As the server calls what comes out of its default output, and of one that has a name.
const QString DEFAULT_MONITOR = QStringLiteral("@DEFAULT_MONITOR@");
const QString MONITOR_OF = QStringLiteral("%1.monitor");
constexpr GstClockTime PATIENCE = 3 * GST_SECOND;
constexpr double US_PER_MS = 1000;

// The error of a pipeline that did not start.
QString ErrorOf(GstElement* pipeline)
{
    GstBus* const bus = gst_element_get_bus(pipeline);
    GstMessage* const message = gst_bus_pop_filtered(bus, GST_MESSAGE_ERROR);
    gst_object_unref(bus);
    if (!message)
        return QStringLiteral("the sound server does not answer");
    GError* error = nullptr;
    gst_message_parse_error(message, &error, nullptr);
    QString text = QString::fromUtf8(error->message);
    g_error_free(error);
    gst_message_unref(message);
    return text;
}

} // namespace

MonitorEar::~MonitorEar()
{
    if (!m_pipeline)
        return;
    gst_element_set_state(m_pipeline, GST_STATE_NULL);
    gst_object_unref(m_pipeline);
}

QString MonitorEar::Start(const QString& sink)
{
    gst_init(nullptr, nullptr);
    GError* error = nullptr;
    GstElement* const launched = gst_parse_launch(PIPELINE, &error);
    if (launched)
        m_pipeline = GST_ELEMENT_CAST(gst_object_ref_sink(launched));
    if (error)
    {
        QString text = QString::fromUtf8(error->message);
        g_error_free(error);
        return text;
    }
    const QString monitor = sink.isEmpty() ? DEFAULT_MONITOR : MONITOR_OF.arg(sink);
    GstElement* const source = gst_bin_get_by_name(GST_BIN_CAST(m_pipeline), "source");
    g_object_set(source, "device", qUtf8Printable(monitor), nullptr);
    gst_object_unref(source);
    GstElement* const ear = gst_bin_get_by_name(GST_BIN_CAST(m_pipeline), "ear");
    g_signal_connect(ear, "handoff", G_CALLBACK(&MonitorEar::OnSamples), this);
    gst_object_unref(ear);
    gst_element_set_state(m_pipeline, GST_STATE_PLAYING);
    // A live source is there without a first sample.
    const GstStateChangeReturn change = gst_element_get_state(m_pipeline, nullptr, nullptr, PATIENCE);
    if (change == GST_STATE_CHANGE_SUCCESS || change == GST_STATE_CHANGE_NO_PREROLL)
        return {};
    return ErrorOf(m_pipeline);
}

void MonitorEar::OnSamples(GstElement* /*sink*/, GstBuffer* buffer, void* /*pad*/, MonitorEar* ear)
{
    GstMapInfo map;
    if (!gst_buffer_map(buffer, &map, GST_MAP_READ))
        return;
    ear->Take({reinterpret_cast<const Pcm::Sample*>(map.data), map.size / sizeof(Pcm::Sample)},
              GST_BUFFER_FLAG_IS_SET(buffer, GST_BUFFER_FLAG_DISCONT));
    gst_buffer_unmap(buffer, &map);
}

void MonitorEar::Take(std::span<const Pcm::Sample> samples, bool isBehindALoss)
{
    const qint64 came_us = g_get_real_time();
    const std::lock_guard lock(m_mutex);
    if (isBehindALoss)
        m_arrivals.Break();
    m_arrivals.Add(m_onsets.Frames(), came_us);
    m_onsets.Feed(samples);
}

std::vector<double> MonitorEar::Begins_ms() const
{
    const std::lock_guard lock(m_mutex);
    const auto& sounds = m_onsets.All();
    std::vector<double> begins_ms(sounds.size());
    std::transform(sounds.begin(), sounds.end(), begins_ms.begin(), [this](const Onsets::Sound& sound) {
        return static_cast<double>(m_arrivals.LineAt_us(sound.begin).value_or(0)) / US_PER_MS;
    });
    return begins_ms;
}

#include "sound/FullLength.h"

#include "sound/Frames.h"
#include "sound/GstHandle.h"

#include <cmath>

namespace
{

// More than a frame of any rate that is resampled.
constexpr gint64 SILENCE_MS = 10;

double ToFrames(qint64 samples, int rate)
{
    return static_cast<double>(samples) * Frames::RATE / rate;
}

} // namespace

void FullLength::Watch(GstElement* resampler)
{
    const GstHandle<GstPad> pad(gst_element_get_static_pad(resampler, "sink"));
    const auto kinds = static_cast<GstPadProbeType>(GST_PAD_PROBE_TYPE_BUFFER | GST_PAD_PROBE_TYPE_EVENT_DOWNSTREAM);
    gst_pad_add_probe(pad.get(), kinds, OnData, this, nullptr);
}

GstPadProbeReturn FullLength::OnData(GstPad* pad, GstPadProbeInfo* info, gpointer length)
{
    auto* const self = static_cast<FullLength*>(length);
    if ((GST_PAD_PROBE_INFO_TYPE(info) & GST_PAD_PROBE_TYPE_BUFFER) != 0)
    {
        self->Count(GST_PAD_PROBE_INFO_BUFFER(info));
        return GST_PAD_PROBE_OK;
    }
    GstEvent* const event = GST_PAD_PROBE_INFO_EVENT(info);
    if (GST_EVENT_TYPE(event) == GST_EVENT_CAPS)
    {
        GstCaps* caps = nullptr; // the event's
        gst_event_parse_caps(event, &caps);
        self->Use(caps);
    }
    if (GST_EVENT_TYPE(event) == GST_EVENT_EOS)
        self->End(pad);
    return GST_PAD_PROBE_OK;
}

void FullLength::Use(const GstCaps* caps)
{
    if (m_samples > 0)
        m_before += ToFrames(m_samples, m_form.rate);
    m_samples = 0;
    if (gst_audio_info_from_caps(&m_form, caps) == FALSE)
        gst_audio_info_init(&m_form);
}

void FullLength::Count(GstBuffer* buffer)
{
    if (m_form.bpf > 0)
        m_samples += static_cast<qint64>(gst_buffer_get_size(buffer)) / m_form.bpf;
}

void FullLength::End(GstPad* pad)
{
    if (m_samples == 0)
        return;
    m_frames = std::llround(m_before + ToFrames(m_samples, m_form.rate));
    const gint64 samples = m_form.rate * SILENCE_MS / 1000 + 1;
    const auto size = static_cast<gsize>(samples * m_form.bpf);
    GstBuffer* silence = gst_buffer_new_allocate(nullptr, size, nullptr);
    GstMapInfo map;
    if (gst_buffer_map(silence, &map, GST_MAP_WRITE) == FALSE)
        return gst_buffer_unref(silence);
    gst_audio_format_info_fill_silence(m_form.finfo, map.data, size);
    gst_buffer_unmap(silence, &map);
    // Refused where nobody wants the rest any more.
    static_cast<void>(gst_pad_chain(pad, silence));
}

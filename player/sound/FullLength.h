#pragma once

#include <QtGlobal>

#include <gst/audio/audio.h>

#include <limits>

// Sees that a source is as many frames long as its own samples say, to the nearest: the resampler alone ends with the
// last frame that begins ahead of the last sample. Owned by who owns the pipeline, and used by the thread that decodes.
class FullLength final
{
public:
    FullLength() = default;
    Q_DISABLE_COPY_MOVE(FullLength)

    // Before the pipeline starts: counts what goes into the resampler, and at the end lets silence follow, which pushes
    // the last frames out.
    void Watch(GstElement* resampler);

    // The frames of the source, once it has ended; what comes behind them is that silence. No limit before.
    [[nodiscard]] qint64 Frames() const { return m_frames; }

private:
    void Use(const GstCaps* caps);
    void Count(GstBuffer* buffer);
    void End(GstPad* pad);

    static GstPadProbeReturn OnData(GstPad* pad, GstPadProbeInfo* info, gpointer length);

    GstAudioInfo m_form{}; // of the samples that come now
    qint64 m_samples = 0;  // of that form
    double m_before = 0;   // frames of what came in another form
    qint64 m_frames = std::numeric_limits<qint64>::max();
};

#include "sound/TrackFeed.h"

#include "sound/Frames.h"

#include <algorithm>

TrackFeed::TrackFeed(qint64 gap, std::function<void()> advanced)
    : m_gap(gap)
    , m_advanced(std::move(advanced))
{
}

void TrackFeed::Add(std::shared_ptr<Decoder> track)
{
    const std::lock_guard lock(m_mutex);
    m_tracks.push_back(std::move(track));
}

void TrackFeed::SetComplete()
{
    const std::lock_guard lock(m_mutex);
    m_isComplete = true;
}

TrackFeed::Ahead TrackFeed::WhatIsAhead() const
{
    const std::lock_guard lock(m_mutex);
    Ahead ahead;
    for (std::size_t index = 1; index < m_tracks.size(); ++index)
    {
        const FrameQueue& queue = m_tracks[index]->Queue();
        ++ahead.tracks;
        ahead.frames += queue.Count() + m_gap;
        ahead.isDecoded = ahead.isDecoded && queue.IsComplete();
    }
    return ahead;
}

qint64 TrackFeed::Read(float* frames, qint64 count)
{
    const std::lock_guard lock(m_mutex);
    qint64 given = 0;
    while (given < count)
    {
        float* rest = frames + Frames::ToSamples(given);
        const qint64 silence = ReadGap(rest, count - given);
        given += silence;
        if (silence > 0)
            continue;
        if (m_tracks.empty())
            break;
        const qint64 read = m_tracks.front()->Queue().Pop(rest, count - given);
        given += read;
        if (read > 0)
            continue;
        if (!m_tracks.front()->Queue().IsOver())
            break;
        LeaveTrack();
    }
    return given;
}

qint64 TrackFeed::ReadGap(float* frames, qint64 count)
{
    // Behind the last track there is none.
    if (m_tracks.empty() && m_isComplete)
        m_gapLeft = 0;
    const qint64 part = std::min(count, m_gapLeft);
    std::fill_n(frames, Frames::ToSamples(part), 0.0F);
    m_gapLeft -= part;
    return part;
}

void TrackFeed::LeaveTrack()
{
    m_tracks.pop_front();
    m_gapLeft = m_gap;
    m_advanced();
}

bool TrackFeed::IsReady() const
{
    const std::lock_guard lock(m_mutex);
    return !m_tracks.empty();
}

bool TrackFeed::IsOver() const
{
    const std::lock_guard lock(m_mutex);
    return m_isComplete &&
           std::all_of(m_tracks.begin(), m_tracks.end(), [](const auto& track) { return track->Queue().IsOver(); });
}

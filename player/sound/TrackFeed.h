#pragma once

#include "sound/Decoder.h"
#include "sound/Feed.h"

#include <deque>
#include <functional>
#include <memory>
#include <mutex>

// Tracks one behind the other, with the same silence between any two of them, to the frame.
class TrackFeed final : public Feed
{
public:
    // advanced: a track has been left; told by the mixer's thread.
    TrackFeed(qint64 gap, std::function<void()> advanced);

    // By the thread of the owner. A track is added when it can be played.
    void Add(std::shared_ptr<Decoder> track);
    void SetComplete(); // none comes any more
    // Of the tracks behind the one that is played: their number, the frames held of them, whether these are all.
    struct Ahead
    {
        int tracks = 0;
        qint64 frames = 0;
        bool isDecoded = true;
    };
    [[nodiscard]] Ahead WhatIsAhead() const;

    qint64 Read(float* frames, qint64 count) override;
    [[nodiscard]] bool IsReady() const override;
    [[nodiscard]] bool IsOver() const override;

private:
    qint64 ReadGap(float* frames, qint64 count);
    void LeaveTrack();

    const qint64 m_gap;
    const std::function<void()> m_advanced;
    mutable std::mutex m_mutex;
    std::deque<std::shared_ptr<Decoder>> m_tracks;
    qint64 m_gapLeft = 0;
    bool m_isComplete = false;
};

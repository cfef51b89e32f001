#pragma once

#include "sound/Decoder.h"
#include "sound/Feed.h"

#include <memory>
#include <mutex>

// Something live, whose source may break and come again. Holds back a little of it, so that what comes late is not
// missed, and lets go of what has piled up.
class LiveFeed final : public Feed
{
public:
    // In frames: what is held back before it sounds, and what may pile up, 0 for as much as the queue holds.
    struct Limits
    {
        qint64 reserve;
        qint64 most;
    };
    explicit LiveFeed(Limits limits);

    // By the thread of the owner. What was left of the source before is dropped.
    void Use(std::shared_ptr<Decoder> source);
    // The source has broken, even if it does not know: what it has given is still heard, and nothing else of it.
    void Leave();
    // The same, and no other comes.
    void End();

    qint64 Read(float* frames, qint64 count) override;
    [[nodiscard]] bool IsReady() const override;
    [[nodiscard]] bool IsOver() const override;

private:
    [[nodiscard]] bool HasReserve() const;
    void LetGoOfWhatIsOver();

    const Limits m_limits;
    mutable std::mutex m_mutex;
    std::shared_ptr<Decoder> m_source;
    bool m_isFilling = true;
    bool m_isOver = false;
};

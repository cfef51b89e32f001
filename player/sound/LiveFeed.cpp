#include "sound/LiveFeed.h"

LiveFeed::LiveFeed(Limits limits)
    : m_limits(limits)
{
}

void LiveFeed::Use(std::shared_ptr<Decoder> source)
{
    const std::lock_guard lock(m_mutex);
    m_source = std::move(source);
    m_isFilling = true;
}

void LiveFeed::Leave()
{
    const std::lock_guard lock(m_mutex);
    if (m_source != nullptr)
        m_source->Queue().Close();
    LetGoOfWhatIsOver();
}

void LiveFeed::End()
{
    Leave();
    const std::lock_guard lock(m_mutex);
    m_isOver = true;
}

// A device that is still held could not be opened again.
void LiveFeed::LetGoOfWhatIsOver()
{
    if (m_source == nullptr || !m_source->Queue().IsOver())
        return;
    m_source = nullptr;
    m_isFilling = true;
}

bool LiveFeed::HasReserve() const
{
    return m_source != nullptr && (m_source->Queue().Count() >= m_limits.reserve || m_source->Queue().IsComplete());
}

qint64 LiveFeed::Read(float* frames, qint64 count)
{
    const std::lock_guard lock(m_mutex);
    if (m_isFilling && !HasReserve())
        return 0;
    m_isFilling = false;
    FrameQueue& queue = m_source->Queue();
    if (m_limits.most > 0 && queue.Count() > m_limits.most)
        queue.DropTo(m_limits.reserve);
    const qint64 given = queue.Pop(frames, count);
    m_isFilling = given < count;
    LetGoOfWhatIsOver();
    return given;
}

bool LiveFeed::IsReady() const
{
    const std::lock_guard lock(m_mutex);
    return HasReserve();
}

bool LiveFeed::IsOver() const
{
    const std::lock_guard lock(m_mutex);
    return m_isOver && m_source == nullptr;
}

#include "sound/FrameQueue.h"

#include "sound/Frames.h"

#include <algorithm>

FrameQueue::FrameQueue(qint64 capacity, WhenFull whenFull)
    : m_ring(static_cast<std::size_t>(Frames::ToSamples(capacity)))
    , m_capacity(capacity)
    , m_whenFull(whenFull)
{
}

bool FrameQueue::Push(const float* frames, qint64 count)
{
    std::unique_lock lock(m_mutex);
    while (count > 0 && !m_isClosed)
    {
        if (m_whenFull == WhenFull::DROP_OLDEST)
            Drop(std::min(m_count, m_count + count - m_capacity));
        m_room.wait(lock, [this] { return m_isClosed || m_count < m_capacity; });
        const qint64 part = std::min(count, m_capacity - m_count);
        if (m_isClosed)
            break;
        Append(frames, part);
        frames += Frames::ToSamples(part);
        count -= part;
    }
    return !m_isClosed;
}

void FrameQueue::Append(const float* frames, qint64 count)
{
    const qint64 at = (m_first + m_count) % m_capacity;
    const qint64 head = std::min(count, m_capacity - at);
    std::copy_n(frames, Frames::ToSamples(head), m_ring.begin() + Frames::ToSamples(at));
    std::copy_n(frames + Frames::ToSamples(head), Frames::ToSamples(count - head), m_ring.begin());
    m_count += count;
    m_pushed += count;
}

void FrameQueue::Drop(qint64 count)
{
    if (count <= 0)
        return;
    m_first = (m_first + count) % m_capacity;
    m_count -= count;
    m_room.notify_all();
}

qint64 FrameQueue::Pop(float* frames, qint64 count)
{
    const std::lock_guard lock(m_mutex);
    const qint64 given = std::min(count, m_count);
    const qint64 head = std::min(given, m_capacity - m_first);
    std::copy_n(m_ring.begin() + Frames::ToSamples(m_first), Frames::ToSamples(head), frames);
    std::copy_n(m_ring.begin(), Frames::ToSamples(given - head), frames + Frames::ToSamples(head));
    Drop(given);
    return given;
}

void FrameQueue::DropTo(qint64 count)
{
    const std::lock_guard lock(m_mutex);
    Drop(m_count - count);
}

void FrameQueue::End()
{
    const std::lock_guard lock(m_mutex);
    m_isComplete = true;
}

void FrameQueue::Close()
{
    const std::lock_guard lock(m_mutex);
    m_isComplete = true;
    m_isClosed = true;
    m_room.notify_all();
}

qint64 FrameQueue::Count() const
{
    const std::lock_guard lock(m_mutex);
    return m_count;
}

qint64 FrameQueue::Pushed() const
{
    const std::lock_guard lock(m_mutex);
    return m_pushed;
}

bool FrameQueue::IsFull() const
{
    const std::lock_guard lock(m_mutex);
    return m_count >= m_capacity;
}

bool FrameQueue::IsComplete() const
{
    const std::lock_guard lock(m_mutex);
    return m_isComplete;
}

bool FrameQueue::IsOver() const
{
    const std::lock_guard lock(m_mutex);
    return m_isComplete && m_count == 0;
}

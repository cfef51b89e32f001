#pragma once

#include <QtGlobal>

#include <condition_variable>
#include <mutex>
#include <vector>

// Frames on their way from the thread that decodes to the one that mixes. Every function may be called by any thread;
// only Push waits.
class FrameQueue final
{
public:
    // What comes when the queue is full: a file can wait, what is live cannot.
    enum class WhenFull
    {
        WAIT,
        DROP_OLDEST,
    };

    FrameQueue(qint64 capacity, WhenFull whenFull);
    Q_DISABLE_COPY_MOVE(FrameQueue)

    // False when the queue has been closed: nobody wants the rest.
    bool Push(const float* frames, qint64 count);

    // Gives up to count frames, and tells how many.
    qint64 Pop(float* frames, qint64 count);

    // Lets the oldest go until no more than count are left.
    void DropTo(qint64 count);

    // No frame comes any more; those that are there still do.
    void End();

    // Wakes who waits in Push, for good.
    void Close();

    [[nodiscard]] qint64 Count() const;
    [[nodiscard]] qint64 Pushed() const;
    [[nodiscard]] bool IsFull() const;
    // End was called; and besides, all frames have been given.
    [[nodiscard]] bool IsComplete() const;
    [[nodiscard]] bool IsOver() const;

private:
    void Append(const float* frames, qint64 count);
    void Drop(qint64 count);

    mutable std::mutex m_mutex;
    std::condition_variable m_room;
    std::vector<float> m_ring;
    qint64 m_capacity;
    WhenFull m_whenFull;
    qint64 m_first = 0;
    qint64 m_count = 0;
    qint64 m_pushed = 0;
    bool m_isComplete = false;
    bool m_isClosed = false;
};

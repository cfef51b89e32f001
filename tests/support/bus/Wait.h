#pragma once

#include <QDeadlineTimer>
#include <QEventLoop>
#include <QThread>

// How long a test waits for what must come. Only a failure takes that long.
inline constexpr int WAIT_MS = 20000;
inline constexpr int WAIT_SLICE_MS = 10;

// Runs the event loop until condition holds; false when it does not within the time.
template <typename Condition> [[nodiscard]] bool WaitUntil(Condition condition, int timeout_ms = WAIT_MS)
{
    const QDeadlineTimer deadline(timeout_ms);
    QEventLoop loop;
    while (!condition())
    {
        if (deadline.hasExpired())
            return false;
        loop.processEvents();
        QThread::msleep(WAIT_SLICE_MS);
    }
    return true;
}

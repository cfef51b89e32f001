#pragma once

#include <QTimer>

#include <functional>

// The two timers of the scheduler's passes.
struct PassTimers
{
    static constexpr int FAR_INTERVAL_MS = 3000;
    static constexpr int EARLY_INTERVAL_MS = 200;

    // What each calls from the event loop. Throws std::runtime_error when that cannot be.
    void SetUp(const std::function<void()>& farPass, const std::function<void()>& earlyPass);

    // When both are due, the far one comes first.
    void Start();
    void Stop();

    QTimer m_farTimer;
    QTimer m_earlyTimer;
};

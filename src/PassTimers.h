#pragma once

#include <QTimer>

#include <functional>

// The two timers of the scheduler's passes. The far pass comes every FAR_INTERVAL_MS from the start on. Of the early
// pass nothing can be seen while nothing is watched closely, so its timer rests then. Otherwise an early pass follows
// each far pass, and one comes at each fifth of a second of the wall clock, so that one falls on each full second.
// Where both are due the far pass comes first. After a far pass, and the early one behind it, the process
// gives its Lifesign. While the timers are stopped, one that calls no pass gives it.
struct PassTimers
{
    static constexpr int FAR_INTERVAL_MS = 3000;
    static constexpr int EARLY_INTERVAL_MS = 200;

    struct Passes
    {
        std::function<void()> far;
        std::function<void()> early;
        std::function<bool()> isWatching; // whether the early pass has anything to do
    };

    // What is called from the event loop. Throws std::runtime_error when that cannot be.
    void SetUp(const Passes& passes);

    // Nothing is watched closely yet.
    void Start();
    void Stop();

    QTimer m_farTimer;
    QTimer m_restTimer;  // runs between Stop and Start, if anybody expects a sign
    QTimer m_earlyTimer; // set anew for each tick: the wall clock may be stepped, and a tick may be late

private:
    void OnFar();
    void OnEarly();
    void PassEarly();

    Passes m_passes;
};

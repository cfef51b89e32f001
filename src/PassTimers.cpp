#include "PassTimers.h"

#include "Clock.h"
#include "process/Lifesign.h"

#include <stdexcept>

namespace
{

void SetUpTimer(QTimer& timer, int interval_ms, const std::function<void()>& pass)
{
    // A gong is due on the second: coarse timers may come 5 % late.
    timer.setTimerType(Qt::PreciseTimer);
    timer.setInterval(interval_ms);
    if (!QObject::connect(&timer, &QTimer::timeout, &timer, pass))
        throw std::runtime_error("scheduler timers");
}

} // namespace

void PassTimers::SetUp(const Passes& passes)
{
    m_passes = passes;
    SetUpTimer(m_farTimer, FAR_INTERVAL_MS, [this] { OnFar(); });
    SetUpTimer(m_earlyTimer, EARLY_INTERVAL_MS, [this] { OnEarly(); });
    m_earlyTimer.setSingleShot(true);
    SetUpTimer(m_restTimer, FAR_INTERVAL_MS, Lifesign::Give);
}

void PassTimers::Start()
{
    m_restTimer.stop();
    m_farTimer.start();
}

void PassTimers::Stop()
{
    m_farTimer.stop();
    m_earlyTimer.stop();
    if (Lifesign::IsExpected())
        m_restTimer.start();
}

void PassTimers::OnFar()
{
    m_passes.far();
    PassEarly();
    Lifesign::Give();
}

void PassTimers::OnEarly()
{
    // The loop was held, and hands out the ticks in the order of their times: a far pass that is due brings an early
    // one.
    if (m_farTimer.remainingTime() != 0)
        PassEarly();
}

// The last pass of a schedule that was stopped in it sets no timer.
void PassTimers::PassEarly()
{
    if (m_passes.isWatching())
        m_passes.early();
    if (m_passes.isWatching() && m_farTimer.isActive())
        m_earlyTimer.start(EARLY_INTERVAL_MS - Clock::IntoSecond_ms() % EARLY_INTERVAL_MS);
    else
        m_earlyTimer.stop();
}

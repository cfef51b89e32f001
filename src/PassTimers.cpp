#include "PassTimers.h"

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

void PassTimers::SetUp(const std::function<void()>& farPass, const std::function<void()>& earlyPass)
{
    SetUpTimer(m_far, FAR_INTERVAL_MS, farPass);
    SetUpTimer(m_early, EARLY_INTERVAL_MS, earlyPass);
}

void PassTimers::Start()
{
    m_far.start();
    m_early.start();
}

void PassTimers::Stop()
{
    m_far.stop();
    m_early.stop();
}

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
    SetUpTimer(m_farTimer, FAR_INTERVAL_MS, farPass);
    SetUpTimer(m_earlyTimer, EARLY_INTERVAL_MS, earlyPass);
}

void PassTimers::Start()
{
    m_farTimer.start();
    m_earlyTimer.start();
}

void PassTimers::Stop()
{
    m_farTimer.stop();
    m_earlyTimer.stop();
}

#include "SignalPipe.h"

#include <QSocketNotifier>

#include <cerrno>
#include <cstdint>
#include <sys/eventfd.h>
#include <unistd.h>

namespace
{

constexpr int CLOSED = -1;

// Written before the handlers are installed, read by them.
int m_descriptor = CLOSED;

} // namespace

bool SignalPipe::Open(std::function<void()> onWake)
{
    m_descriptor = ::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    if (m_descriptor == CLOSED)
        return false;
    // Lives as long as the process, like the handlers.
    static QSocketNotifier notifier(m_descriptor, QSocketNotifier::Read);
    return static_cast<bool>(QObject::connect(&notifier, &QSocketNotifier::activated, [onWake = std::move(onWake)] {
        eventfd_t wakes = 0;
        if (::eventfd_read(m_descriptor, &wakes) == 0)
            onWake();
    }));
}

void SignalPipe::Wake() noexcept
{
    const int saved = errno;
    // Cannot fail but when 2^64 signals wait already: the loop is awake then.
    static_cast<void>(::eventfd_write(m_descriptor, 1));
    errno = saved;
}

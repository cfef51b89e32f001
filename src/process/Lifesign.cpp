#include "Lifesign.h"

#include <cstddef>
#include <cstdlib>
#include <string>
#include <string_view>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace
{

constexpr const char* SOCKET_VARIABLE = "NOTIFY_SOCKET";
constexpr const char* PERIOD_VARIABLE = "WATCHDOG_USEC";
constexpr const char* PROCESS_VARIABLE = "WATCHDOG_PID";
constexpr std::string_view SIGN = "WATCHDOG=1";
constexpr int CLOSED = -1;

int m_descriptor = CLOSED;

// A process that is started by another one inherits what was meant for that.
bool IsMeantForUs()
{
    const char* const process = std::getenv(PROCESS_VARIABLE);
    return process == nullptr || std::to_string(::getpid()) == process;
}

// Whether the descriptor is connected to the socket of that path, or of that abstract name if it begins with "@".
bool Connect(int descriptor, std::string_view path)
{
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.size() >= sizeof address.sun_path)
        return false;
    path.copy(static_cast<char*>(address.sun_path), path.size());
    if (path.starts_with('@'))
        address.sun_path[0] = '\0';
    const size_t size = offsetof(sockaddr_un, sun_path) + path.size();
    return ::connect(descriptor, reinterpret_cast<const sockaddr*>(&address), static_cast<socklen_t>(size)) == 0;
}

void Close()
{
    if (m_descriptor != CLOSED)
        ::close(m_descriptor);
    m_descriptor = CLOSED;
}

} // namespace

bool Lifesign::Open()
{
    Close();
    const char* const path = std::getenv(SOCKET_VARIABLE);
    if (path == nullptr || std::getenv(PERIOD_VARIABLE) == nullptr || !IsMeantForUs())
        return true;
    m_descriptor = ::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    if (m_descriptor != CLOSED && Connect(m_descriptor, path))
        return true;
    Close();
    return false;
}

bool Lifesign::IsExpected()
{
    return m_descriptor != CLOSED;
}

void Lifesign::Give()
{
    if (IsExpected())
        static_cast<void>(::send(m_descriptor, SIGN.data(), SIGN.size(), MSG_DONTWAIT | MSG_NOSIGNAL));
}

#include "LogStream.h"

#include "LogRecord.h"

#include <algorithm>
#include <climits>
#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

constexpr int NONE = -1;

bool IsPipeOrTerminal(int descriptor)
{
    struct stat status
    {
    };
    return ::fstat(descriptor, &status) == 0 && (S_ISFIFO(status.st_mode) || ::isatty(descriptor) == 1);
}

// Whether writing waits is a flag of the opened file, which all share that have inherited it: the shell would get a
// terminal that does not wait any more. What is opened anew has flags of its own. That may be refused: where the file
// is another user's, where no descriptor is left, where the system shows no /proc.
int OpenAnew(int descriptor)
{
    if (!IsPipeOrTerminal(descriptor))
        return NONE;
    const std::string path = "/proc/self/fd/" + std::to_string(descriptor);
    return ::open(path.c_str(), O_WRONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
}

} // namespace

LogStream::LogStream(int descriptor)
    : m_own(OpenAnew(descriptor))
    , m_descriptor(m_own != NONE ? m_own : descriptor)
    , m_way(m_own != NONE ? Way::AT_ONCE : WayOf(descriptor))
{
}

LogStream::~LogStream()
{
    if (m_own != NONE)
        ::close(m_own);
}

LogStream::Way LogStream::WayOf(int descriptor)
{
    struct stat status
    {
    };
    if (::fstat(descriptor, &status) != 0 || S_ISREG(status.st_mode))
        return Way::AT_ONCE;
    return S_ISSOCK(status.st_mode) ? Way::SOCKET : Way::ASKING;
}

bool LogStream::Take(const LogRecord& record)
{
    if (!WriteRest())
        return false;
    m_rest = record.Line();
    const ssize_t written = WriteSome(m_rest);
    if (written <= 0)
    {
        m_rest.clear();
        return false;
    }
    m_rest.erase(0, static_cast<size_t>(written));
    static_cast<void>(WriteRest());
    return true;
}

bool LogStream::WriteRest()
{
    while (!m_rest.empty())
    {
        const ssize_t written = WriteSome(m_rest);
        if (written <= 0)
            return false;
        m_rest.erase(0, static_cast<size_t>(written));
    }
    return true;
}

ssize_t LogStream::WriteSome(std::string_view bytes) const
{
    if (m_way == Way::SOCKET)
        return ::send(m_descriptor, bytes.data(), bytes.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
    if (m_way == Way::AT_ONCE)
        return ::write(m_descriptor, bytes.data(), bytes.size());

    pollfd state{m_descriptor, POLLOUT, 0};
    if (::poll(&state, 1, 0) <= 0)
        return NONE;
    // A pipe that has room at all has room for so much.
    return ::write(m_descriptor, bytes.data(), std::min<size_t>(bytes.size(), PIPE_BUF));
}

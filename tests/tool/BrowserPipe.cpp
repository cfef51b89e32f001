#include "BrowserPipe.h"

#include <array>
#include <fcntl.h>
#include <poll.h>
#include <stdexcept>
#include <unistd.h>

namespace
{

constexpr int DEADLINE_MS = 60000;
constexpr int END_MS = 10000;
constexpr int BROWSER_READS = 3; // the descriptors that the browser expects
constexpr int BROWSER_WRITES = 4;
constexpr int FIRST_OWN = 10; // clear of those
constexpr size_t BUFFER = 1 << 16;
constexpr char MESSAGE_END = '\0';

QProcessEnvironment EnvironmentIn(const QString& folder)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char* variable : {"HOME", "TMPDIR", "XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_RUNTIME_DIR"})
        environment.insert(QLatin1String(variable), folder);
    return environment;
}

// The reading end and the writing end of a new pipe, which no other process inherits.
std::array<int, 2> NewPipe()
{
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0)
        BrowserPipe::Fail("no pipe");
    for (int& end : ends)
    {
        const int low = end;
        end = ::fcntl(low, F_DUPFD_CLOEXEC, FIRST_OWN);
        ::close(low);
        if (end < 0)
            BrowserPipe::Fail("no descriptor");
    }
    return ends;
}

} // namespace

void BrowserPipe::Fail(const QByteArray& what)
{
    throw std::runtime_error("browser: " + what.toStdString());
}

BrowserPipe::BrowserPipe(const QString& program, const QStringList& options, const QString& folder)
{
    const std::array<int, 2> there = NewPipe();
    const std::array<int, 2> back = NewPipe();
    m_toBrowser = there[1];
    m_fromBrowser = back[0];
    m_process.setProcessEnvironment(EnvironmentIn(folder));
    m_process.setStandardOutputFile(QProcess::nullDevice());
    m_process.setStandardErrorFile(QProcess::nullDevice());
    m_process.setChildProcessModifier([&] {
        // A browser without them ends, which is told when it is talked to.
        static_cast<void>(::dup2(there[0], BROWSER_READS));
        static_cast<void>(::dup2(back[1], BROWSER_WRITES));
    });
    m_process.start(program, options);
    const bool isRunning = m_process.waitForStarted();
    ::close(there[0]);
    ::close(back[1]);
    if (!isRunning)
        Fail(m_process.errorString().toLocal8Bit());
}

BrowserPipe::~BrowserPipe()
{
    // It ends with its pipe.
    ::close(m_toBrowser);
    ::close(m_fromBrowser);
    if (m_process.waitForFinished(END_MS))
        return;
    m_process.kill();
    m_process.waitForFinished();
}

void BrowserPipe::Send(const QByteArray& message) const
{
    const QByteArray bytes = message + MESSAGE_END;
    for (qsizetype done = 0; done < bytes.size();)
    {
        const ssize_t written =
            ::write(m_toBrowser, bytes.constData() + done, static_cast<size_t>(bytes.size() - done));
        if (written <= 0)
            Fail("is gone");
        done += written;
    }
}

QByteArray BrowserPipe::Receive()
{
    qsizetype end = -1;
    while ((end = m_received.indexOf(MESSAGE_END)) < 0)
    {
        pollfd reading{m_fromBrowser, POLLIN, 0};
        if (::poll(&reading, 1, DEADLINE_MS) <= 0)
            Fail("says nothing");
        std::array<char, BUFFER> buffer{};
        const ssize_t length = ::read(m_fromBrowser, buffer.data(), buffer.size());
        if (length <= 0)
            Fail("is gone");
        m_received.append(buffer.data(), length);
    }
    const QByteArray message = m_received.left(end);
    m_received.remove(0, end + 1);
    return message;
}

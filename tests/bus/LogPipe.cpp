#include "LogPipe.h"

#include "Wait.h"

#include <QFile>

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

LogPipe::LogPipe(const QString& path)
{
    const QByteArray name = QFile::encodeName(path);
    // Opened for both, it never ends when a writer goes, and tells when it is full.
    if (::mkfifo(name.constData(), 0600) == 0)
        m_descriptor = ::open(name.constData(), O_RDWR | O_NONBLOCK | O_CLOEXEC);
    if (m_descriptor < 0)
        qFatal("cannot make a pipe at %s", name.constData());
}

LogPipe::~LogPipe()
{
    ::close(m_descriptor);
}

bool LogPipe::WaitUntilFull() const
{
    return WaitUntil([this] {
        pollfd state{m_descriptor, POLLOUT, 0};
        return ::poll(&state, 1, 0) == 0;
    });
}

bool LogPipe::ReadUntil(const QByteArray& text)
{
    qsizetype searched = 0;
    return WaitUntil([&] {
        QByteArray block(65536, '\0');
        for (ssize_t size = 0; (size = ::read(m_descriptor, block.data(), static_cast<size_t>(block.size()))) > 0;)
            m_log.append(block.constData(), size);
        const bool isFound = m_log.indexOf(text, searched) >= 0;
        searched = std::max<qsizetype>(0, m_log.size() - text.size());
        return isFound;
    });
}

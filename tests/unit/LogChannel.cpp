#include "LogChannel.h"

#include <QRegularExpression>

#include <cstdlib>
#include <fcntl.h>
#include <sys/socket.h>
#include <termios.h>

using namespace Qt::StringLiterals;

LogChannel::LogChannel(const QString& kind)
{
    const bool isMade = kind == "pipe"_L1     ? ::pipe(m_ends.data()) == 0
                        : kind == "socket"_L1 ? ::socketpair(AF_UNIX, SOCK_STREAM, 0, m_ends.data()) == 0
                                              : OpenTerminal();
    if (!isMade || ::fcntl(Reader(), F_SETFL, O_NONBLOCK) != 0)
        qFatal("cannot make a %s", qPrintable(kind));
}

LogChannel::~LogChannel()
{
    ::close(m_ends[0]);
    ::close(m_ends[1]);
}

QByteArray LogChannel::Read(qsizetype atMost) const
{
    QByteArray all;
    QByteArray block(4096, '\0');
    ssize_t size = 0;
    while (all.size() < atMost && (size = ::read(Reader(), block.data(), static_cast<size_t>(block.size()))) > 0)
        all.append(block.constData(), size);
    return all;
}

bool LogChannel::OpenTerminal()
{
    termios mode{};
    m_ends[0] = ::posix_openpt(O_RDWR | O_NOCTTY);
    if (m_ends[0] < 0 || ::grantpt(m_ends[0]) != 0 || ::unlockpt(m_ends[0]) != 0)
        return false;
    m_ends[1] = ::open(::ptsname(m_ends[0]), O_RDWR | O_NOCTTY);
    if (m_ends[1] < 0 || ::tcgetattr(m_ends[1], &mode) != 0)
        return false;
    ::cfmakeraw(&mode);
    return ::tcsetattr(m_ends[1], TCSANOW, &mode) == 0;
}

LogSum::LogSum(const QByteArray& log)
{
    static const QRegularExpression record(u"^4 /origin (record [0-9]+ x*)$"_s);
    static const QRegularExpression loss(u"^2 /com/kestrelix/ozna/scheduler/schedulerobj "
                                         "\\[LogInterface\\.cpp:[0-9]+\\] Log records lost: ([0-9]+)$"_s);
    QByteArrayList lines = log.split('\n');
    if (!lines.takeLast().isEmpty())
        odd = "a record without an end";
    for (const QByteArray& line : lines)
    {
        const QString text = QString::fromLatin1(line);
        if (record.match(text).hasMatch())
            records.append(line);
        else if (const auto match = loss.match(text); match.hasMatch())
        {
            ++told;
            lost += match.captured(1).toInt();
        }
        else if (odd.isEmpty())
            odd = line;
    }
}

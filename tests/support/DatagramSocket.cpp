#include "DatagramSocket.h"

#include <QFile>

#include <cstddef>
#include <cstring>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

DatagramSocket::DatagramSocket(const QString& path)
    : m_path(QFile::encodeName(path))
    , m_descriptor(::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0))
{
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const auto length = static_cast<size_t>(m_path.size());
    if (m_descriptor < 0 || length >= sizeof address.sun_path)
        qFatal("no socket for %s", m_path.constData());
    std::memcpy(static_cast<char*>(address.sun_path), m_path.constData(), length);
    if (m_path.startsWith('@'))
        address.sun_path[0] = '\0';
    const size_t size = offsetof(sockaddr_un, sun_path) + length;
    if (::bind(m_descriptor, reinterpret_cast<const sockaddr*>(&address), static_cast<socklen_t>(size)) != 0)
        qFatal("cannot make a socket at %s", m_path.constData());
}

DatagramSocket::~DatagramSocket()
{
    ::close(m_descriptor);
    ::unlink(m_path.constData());
}

QByteArrayList DatagramSocket::Read() const
{
    constexpr qsizetype LONGEST = 300'000;
    QByteArrayList datagrams;
    QByteArray datagram(LONGEST, '\0');
    for (ssize_t size = 0;
         (size = ::recv(m_descriptor, datagram.data(), static_cast<size_t>(LONGEST), MSG_DONTWAIT)) >= 0;)
        datagrams.append(datagram.left(size));
    return datagrams;
}

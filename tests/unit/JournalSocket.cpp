#include "JournalSocket.h"

#include <QTemporaryDir>

#include <cstring>
#include <standin/JournalAddress.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

// In the place of the log client's own.
const char* JournalAddress()
{
    static const QTemporaryDir folder;
    static const QByteArray path = folder.filePath(QStringLiteral("journal")).toLocal8Bit();
    return path.constData();
}

JournalSocket::JournalSocket()
{
    Open();
}

JournalSocket::~JournalSocket()
{
    Close();
}

void JournalSocket::Close()
{
    ::close(m_descriptor);
    ::unlink(JournalAddress());
    m_descriptor = -1;
}

void JournalSocket::Open()
{
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strncpy(static_cast<char*>(address.sun_path), JournalAddress(), sizeof address.sun_path - 1);
    m_descriptor = ::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    if (m_descriptor < 0 || ::bind(m_descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
        qFatal("cannot make a journal at %s", JournalAddress());
}

QList<JournalSocket::Entry> JournalSocket::Read() const
{
    QList<Entry> entries;
    QByteArray datagram(300'000, '\0');
    for (ssize_t size = 0;
         (size = ::recv(m_descriptor, datagram.data(), static_cast<size_t>(datagram.size()), MSG_DONTWAIT)) >= 0;)
    {
        QByteArrayList lines = datagram.left(size).split('\n');
        Entry entry;
        if (!lines.takeLast().isEmpty())
            entry.insert("odd", "a field without an end");
        for (const QByteArray& line : lines)
        {
            const qsizetype sign = line.indexOf('=');
            if (sign <= 0 || entry.contains(line.left(sign)))
                entry.insert("odd", line);
            entry.insert(line.left(sign), line.mid(sign + 1));
        }
        entries.append(entry);
    }
    return entries;
}

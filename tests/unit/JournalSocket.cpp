#include "JournalSocket.h"

#include <QTemporaryDir>

#include <standin/JournalAddress.h>

namespace
{

JournalSocket::Entry EntryOf(const QByteArray& datagram)
{
    JournalSocket::Entry entry;
    QByteArrayList lines = datagram.split('\n');
    if (!lines.takeLast().isEmpty())
        entry.insert("odd", "a field without an end");
    for (const QByteArray& line : lines)
    {
        const qsizetype sign = line.indexOf('=');
        if (sign <= 0 || entry.contains(line.left(sign)))
            entry.insert("odd", line);
        entry.insert(line.left(sign), line.mid(sign + 1));
    }
    return entry;
}

} // namespace

// In the place of the log client's own.
const char* JournalAddress()
{
    static const QTemporaryDir folder;
    static const QByteArray path = folder.filePath(QStringLiteral("journal")).toLocal8Bit();
    return path.constData();
}

void JournalSocket::Open()
{
    m_socket.emplace(QString::fromLocal8Bit(JournalAddress()));
}

QList<JournalSocket::Entry> JournalSocket::Read() const
{
    QList<Entry> entries;
    for (const QByteArray& datagram : m_socket->Read())
        entries.append(EntryOf(datagram));
    return entries;
}

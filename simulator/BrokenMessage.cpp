#include "BrokenMessage.h"

#include <QByteArray>
#include <QtEndian>

#include <sys/socket.h>
#include <sys/un.h>

namespace
{

constexpr const char* BUS_VARIABLE = "DBUS_SESSION_BUS_ADDRESS";
constexpr int LAST_DESCRIPTOR = 255;
constexpr int NONE = -1;

constexpr char METHOD_RETURN = 2;
constexpr char PROTOCOL_VERSION = 1;
constexpr quint32 ANY_SERIAL = 0x7fffffff;
constexpr char FIELD_REPLY_SERIAL = 5;
constexpr char FIELD_SIGNATURE = 8;
constexpr int FIELD_ALIGNMENT = 8;

// The bus library does not tell the descriptor of its socket. It is the one whose other end has the bus's path.
int FindBusSocket()
{
    const QByteArray address = qgetenv(BUS_VARIABLE);
    for (int descriptor = 0; descriptor <= LAST_DESCRIPTOR; ++descriptor)
    {
        sockaddr_un peer{};
        socklen_t length = sizeof(peer) - 1;
        if (::getpeername(descriptor, reinterpret_cast<sockaddr*>(&peer), &length) == 0 && peer.sun_family == AF_UNIX &&
            peer.sun_path[0] != '\0' && address.contains(QByteArray("path=") + peer.sun_path))
            return descriptor;
    }
    return NONE;
}

void AppendNumber(QByteArray& message, quint32 number)
{
    const quint32 little = qToLittleEndian(number);
    message.append(reinterpret_cast<const char*>(&little), sizeof(little));
}

void Align(QByteArray& message)
{
    while (message.size() % FIELD_ALIGNMENT != 0)
        message.append('\0');
}

QByteArray Message()
{
    QByteArray fields(1, FIELD_REPLY_SERIAL);
    fields.append("\1u", 3); // its type
    AppendNumber(fields, ANY_SERIAL);
    Align(fields);
    fields.append(FIELD_SIGNATURE);
    fields.append("\1g", 3);
    fields.append("\2()", 4);

    QByteArray message("l", 1); // little-endian
    message.append(METHOD_RETURN);
    message.append('\0'); // no flags
    message.append(PROTOCOL_VERSION);
    AppendNumber(message, 0); // an empty structure has no bytes
    AppendNumber(message, ANY_SERIAL);
    AppendNumber(message, static_cast<quint32>(fields.size()));
    message.append(fields);
    Align(message);
    return message;
}

} // namespace

bool BrokenMessage::Send()
{
    const int socket = FindBusSocket();
    const QByteArray message = Message();
    return socket != NONE && ::send(socket, message.constData(), static_cast<size_t>(message.size()), MSG_NOSIGNAL) ==
                                 static_cast<ssize_t>(message.size());
}

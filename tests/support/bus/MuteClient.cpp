#include "MuteClient.h"

#include <QList>
#include <QSysInfo>

#include <stdexcept>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace
{

constexpr char METHOD_CALL = 1;
constexpr char PROTOCOL_VERSION = 1;
constexpr qsizetype STRUCT_ALIGNMENT = 8;

// The header fields of a call, each with the type of its value.
constexpr char FIELD_PATH = 1;
constexpr char FIELD_INTERFACE = 2;
constexpr char FIELD_MEMBER = 3;
constexpr char FIELD_DESTINATION = 6;

void Align(QByteArray& bytes)
{
    while (bytes.size() % STRUCT_ALIGNMENT != 0)
        bytes.append('\0');
}

QByteArray Number(qsizetype value)
{
    const auto number = static_cast<quint32>(value);
    return {reinterpret_cast<const char*>(&number), sizeof number};
}

void AppendField(QByteArray& fields, char field, char type, const QByteArray& value)
{
    Align(fields);
    fields.append(field).append('\1').append(type).append('\0');
    fields.append(Number(value.size())).append(value).append('\0');
}

} // namespace

MuteClient::MuteClient(const QByteArray& address)
    : m_socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0))
{
    const QByteArray path = address.split(',').value(0).split('=').value(1);
    sockaddr_un name{};
    name.sun_family = AF_UNIX;
    qstrncpy(name.sun_path, path.constData(), sizeof name.sun_path);
    if (::connect(m_socket, reinterpret_cast<const sockaddr*>(&name), sizeof name) != 0 || !Authenticate() ||
        !Call("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "Hello"))
        throw std::runtime_error("the bus does not take a client");
}

MuteClient::~MuteClient()
{
    ::close(m_socket);
}

bool MuteClient::Authenticate() const
{
    const QByteArray user = QByteArray::number(::geteuid()).toHex();
    if (!Send(QByteArray(1, '\0') + "AUTH EXTERNAL " + user + "\r\n"))
        return false;
    // The one answer that is waited for: before it the bus takes no message.
    char first = '\0';
    return ::recv(m_socket, &first, 1, 0) == 1 && first == 'O' && Send("BEGIN\r\n");
}

bool MuteClient::Call(const QByteArray& service, const QByteArray& path, const QByteArray& interface,
                      const QByteArray& method)
{
    QByteArray fields;
    AppendField(fields, FIELD_PATH, 'o', path);
    AppendField(fields, FIELD_INTERFACE, 's', interface);
    AppendField(fields, FIELD_MEMBER, 's', method);
    AppendField(fields, FIELD_DESTINATION, 's', service);
    QByteArray message;
    message.append(QSysInfo::ByteOrder == QSysInfo::LittleEndian ? 'l' : 'B');
    message.append(METHOD_CALL).append('\0').append(PROTOCOL_VERSION);
    message.append(Number(0)).append(Number(++m_serial)).append(Number(fields.size())).append(fields);
    Align(message);
    return Send(message);
}

bool MuteClient::Send(const QByteArray& bytes) const
{
    return ::send(m_socket, bytes.constData(), static_cast<size_t>(bytes.size()), MSG_NOSIGNAL) == bytes.size();
}

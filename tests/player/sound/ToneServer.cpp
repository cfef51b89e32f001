#include "ToneServer.h"

#include <QtEndian>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cmath>
#include <numbers>

namespace
{

constexpr int RATE = 48000;
constexpr int TONE_Hz = 480;
constexpr int PERIODS = 480; // a second
constexpr quint32 ENDLESS = 0x7fffffff;
constexpr int BACKLOG = 8;

void Add(QByteArray& bytes, quint32 value)
{
    value = qToLittleEndian(value);
    bytes.append(reinterpret_cast<const char*>(&value), sizeof value);
}

} // namespace

ToneServer::ToneServer(double level)
    : m_header("HTTP/1.0 200 OK\r\nContent-Type: audio/x-wav\r\n\r\nRIFF")
{
    Add(m_header, ENDLESS);
    m_header.append("WAVEfmt ");
    for (const quint32 value : {16U, 0x0001'0001U, unsigned(RATE), unsigned(RATE) * 2, 0x0010'0002U})
        Add(m_header, value);
    m_header.append("data");
    Add(m_header, ENDLESS);
    for (int frame = 0; frame < PERIODS * RATE / TONE_Hz; ++frame)
    {
        const double value = level * std::cos(2 * std::numbers::pi * TONE_Hz * frame / RATE);
        const qint16 sample = qToLittleEndian(static_cast<qint16>(std::lround(32767 * value)));
        m_tone.append(reinterpret_cast<const char*>(&sample), sizeof sample);
    }
}

ToneServer::~ToneServer()
{
    Stop();
}

bool ToneServer::Start()
{
    m_listener = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    const int on = 1;
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(m_port);
    socklen_t size = sizeof address;
    auto* const plain = reinterpret_cast<sockaddr*>(&address);
    if (m_listener < 0 || setsockopt(m_listener, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on) != 0 ||
        bind(m_listener, plain, size) != 0 || listen(m_listener, BACKLOG) != 0 ||
        getsockname(m_listener, plain, &size) != 0)
        return false;
    m_port = ntohs(address.sin_port);
    m_notifier = std::make_unique<QSocketNotifier>(m_listener, QSocketNotifier::Read);
    QObject::connect(m_notifier.get(), &QSocketNotifier::activated, [this] { Accept(); });
    return true;
}

void ToneServer::Stop()
{
    while (!m_clients.empty())
        Drop(m_clients.begin()->first);
    m_notifier.reset();
    if (m_listener >= 0)
        close(m_listener);
    m_listener = -1;
}

QString ToneServer::Address() const
{
    return QStringLiteral("http://127.0.0.1:%1/tone.wav").arg(m_port);
}

void ToneServer::Accept()
{
    const int socket = accept4(m_listener, nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK);
    if (socket < 0)
        return;
    ++m_asked;
    Client& client = m_clients[socket];
    client.notifier = std::make_unique<QSocketNotifier>(socket, QSocketNotifier::Write);
    QObject::connect(client.notifier.get(), &QSocketNotifier::activated, [this, socket] { Serve(socket); });
}

void ToneServer::Serve(int socket)
{
    Client& client = m_clients.at(socket);
    if (m_isSilent)
        return client.notifier->setEnabled(false);
    const QByteArray& part = client.hasHeader ? m_tone : m_header;
    const ssize_t size =
        send(socket, part.constData() + client.sent, static_cast<std::size_t>(part.size() - client.sent), MSG_NOSIGNAL);
    if (size < 0)
        return Drop(socket);
    client.sent += size;
    if (client.sent < part.size())
        return;
    client.sent = 0;
    client.hasHeader = true;
}

void ToneServer::Drop(int socket)
{
    m_clients.at(socket).notifier.release()->deleteLater(); // it may be the one that calls
    m_clients.erase(socket);
    close(socket);
}

#include "ToneServer.h"

#include <QtEndian>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cmath>
#include <numbers>

namespace
{

constexpr int RATE = 48000;
constexpr int TONE_HZ = 480;
constexpr int PERIODS = 480; // a second
constexpr quint32 ENDLESS = 0x7fffffff;
constexpr int BACKLOG = 8;
constexpr int STEP_MS = 20;
constexpr qint64 AHEAD_MS = 500;
constexpr qint64 BYTES_PER_MS = RATE * 2 / 1000;

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
    for (int frame = 0; frame < PERIODS * RATE / TONE_HZ; ++frame)
    {
        const double value = level * std::cos(2 * std::numbers::pi * TONE_HZ * frame / RATE);
        const qint16 sample = qToLittleEndian(static_cast<qint16>(std::lround(32767 * value)));
        m_tone.append(reinterpret_cast<const char*>(&sample), sizeof sample);
    }
    QObject::connect(&m_timer, &QTimer::timeout, [this] { ServeAll(); });
    m_timer.start(STEP_MS);
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
    for (const auto& [socket, client] : m_clients)
        close(socket);
    m_clients.clear();
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
    m_clients[socket].since.start();
    if (send(socket, m_header.constData(), static_cast<std::size_t>(m_header.size()), MSG_NOSIGNAL) != m_header.size())
        qWarning("the header was not sent");
}

void ToneServer::ServeAll()
{
    if (m_isSilent)
        return;
    for (auto next = m_clients.begin(); next != m_clients.end();)
    {
        const auto client = next++;
        if (Serve(client->first, client->second))
            continue;
        close(client->first);
        m_clients.erase(client);
    }
}

bool ToneServer::Serve(int socket, Client& client) const
{
    const qint64 due = std::min(client.since.elapsed() + AHEAD_MS, m_most_ms) * BYTES_PER_MS;
    while (client.sent < due)
    {
        const qint64 at = client.sent % m_tone.size();
        const auto size = static_cast<std::size_t>(std::min(due - client.sent, m_tone.size() - at));
        const ssize_t sent = send(socket, m_tone.constData() + at, size, MSG_NOSIGNAL);
        if (sent < 0)
            return errno == EAGAIN;
        client.sent += sent;
    }
    return true;
}

#pragma once

#include <QElapsedTimer>
#include <QSocketNotifier>
#include <QString>
#include <QTimer>

#include <limits>
#include <map>
#include <memory>

// An HTTP server on this machine whose only document is a tone without an end, served by the event loop as it sounds,
// half a second ahead.
class ToneServer final
{
public:
    explicit ToneServer(double level);
    ~ToneServer();
    Q_DISABLE_COPY_MOVE(ToneServer)

    // At the port that it had before, if it had one. False when that fails.
    bool Start();
    // Every connection breaks, and none is accepted.
    void Stop();
    // Connections stay, and nothing more is sent.
    void FallSilent() { m_isSilent = true; }
    // Each connection gets so much of the tone, then stays, and nothing more is sent.
    void FallSilentAfter(qint64 time_ms) { m_most_ms = time_ms; }

    [[nodiscard]] QString Address() const;
    [[nodiscard]] int Asked() const { return m_asked; }

private:
    struct Client
    {
        QElapsedTimer since;
        qint64 sent = 0; // of the tone, in bytes
    };

    void Accept();
    void ServeAll();
    // False when the client has gone.
    bool Serve(int socket, Client& client) const;

    QByteArray m_header;
    QByteArray m_tone;
    int m_listener = -1;
    quint16 m_port = 0;
    std::unique_ptr<QSocketNotifier> m_notifier;
    QTimer m_timer;
    std::map<int, Client> m_clients;
    bool m_isSilent = false;
    qint64 m_most_ms = std::numeric_limits<int>::max();
    int m_asked = 0;
};

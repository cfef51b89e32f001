#pragma once

#include <QProcess>
#include <QString>

// A process that serves a tone on this machine: tests/player/heard/stream-server.
class StreamServer final
{
public:
    // kind: "rtsp" or "http". length_s: after which the stream ends; 0 for never. port: one that was served before; 0
    // for a free one. Waits until it serves, and ends the test program when it does not.
    explicit StreamServer(const QString& kind, int length_s = 0, int port = 0);
    ~StreamServer();

    StreamServer(const StreamServer&) = delete;
    StreamServer& operator=(const StreamServer&) = delete;

    [[nodiscard]] QString Address() const { return m_address; }

    // As when its machine is switched off.
    void Kill();
    // As when it is stuck: its connections stay.
    void Hang() const;
    void GoOn() const;

private:
    QProcess m_process;
    QString m_address;
};

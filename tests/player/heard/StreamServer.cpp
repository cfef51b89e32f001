#include "StreamServer.h"

#include "Wait.h"

#include <csignal>

using namespace Qt::StringLiterals;

StreamServer::StreamServer(const QString& kind, int length_s, int port)
{
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process.start(QStringLiteral(OZNA_SOURCE_DIR "/tests/player/heard/stream-server"),
                    {kind, QString::number(length_s), QString::number(port)});
    const bool isServing = WaitUntil([this] {
        m_process.waitForReadyRead(WAIT_SLICE_MS);
        return m_process.canReadLine();
    });
    if (!isServing)
        qFatal("no stream of the kind %s", qPrintable(kind));
    m_address = QString::fromUtf8(m_process.readLine()).trimmed();
}

StreamServer::~StreamServer()
{
    Kill();
}

void StreamServer::Kill()
{
    m_process.kill();
    m_process.waitForFinished();
}

void StreamServer::Hang() const
{
    if (::kill(static_cast<pid_t>(m_process.processId()), SIGSTOP) != 0)
        qFatal("the server cannot be held");
}

void StreamServer::GoOn() const
{
    if (::kill(static_cast<pid_t>(m_process.processId()), SIGCONT) != 0)
        qFatal("the server cannot go on");
}

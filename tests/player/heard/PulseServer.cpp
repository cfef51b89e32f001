#include "PulseServer.h"

#include "Wait.h"

#include <QFile>

#include <csignal>

using namespace Qt::StringLiterals;

PulseServer::PulseServer()
{
    Start();
}

PulseServer::~PulseServer()
{
    Kill();
}

void PulseServer::Apply(QProcessEnvironment& environment) const
{
    environment.insert(u"PULSE_SERVER"_s, u"unix:"_s + Socket());
    environment.insert(u"HOME"_s, m_folder.path()); // of the cookie that nobody asks for
}

void PulseServer::Kill()
{
    m_process.kill();
    m_process.waitForFinished();
    QFile::remove(Socket());
}

void PulseServer::Halt()
{
    if (::kill(static_cast<pid_t>(m_process.processId()), SIGSTOP) != 0)
        qFatal("cannot halt the sound server");
}

void PulseServer::Start()
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const QString& name : {u"XDG_RUNTIME_DIR"_s, u"XDG_CONFIG_HOME"_s, u"HOME"_s})
        environment.insert(name, m_folder.path());
    m_process.setProcessEnvironment(environment);
    m_process.setStandardOutputFile(QProcess::nullDevice());
    m_process.setStandardErrorFile(QProcess::nullDevice());
    m_process.start(u"pulseaudio"_s,
                    {u"-n"_s, u"--daemonize=no"_s, u"--system=no"_s, u"--exit-idle-time=-1"_s, u"--use-pid-file=no"_s,
                     u"-L"_s, u"module-native-protocol-unix auth-anonymous=1 socket="_s + Socket(), u"-L"_s,
                     u"module-null-sink sink_name=ear rate=48000 channels=2"_s, u"-L"_s,
                     u"module-null-sink sink_name=yard rate=48000 channels=2"_s});
    if (!WaitUntil([this] { return QFile::exists(Socket()); }))
        qFatal("no sound server: %s", qPrintable(m_process.errorString()));
}

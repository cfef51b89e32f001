#include "DaemonProcess.h"

#include "BuiltProgram.h"
#include "Wait.h"

#include <QRegularExpression>

#include <array>
#include <csignal>
#include <cstdlib>
#include <linux/capability.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/types.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace
{

QString Shown(const QByteArray& record)
{
    static const QRegularExpression form(
        u"\\A([0-9]) (\\S+) \\[([A-Za-z]+(?:/[A-Za-z]+)*\\.cpp):[1-9][0-9]*\\] (.*)\\z"_s);
    const QString line = QString::fromUtf8(record);
    const QRegularExpressionMatch match = form.match(line);
    if (!match.hasMatch())
        return line;
    QString shown = u"%1 [%2] %3"_s.arg(match.captured(1), match.captured(3), match.captured(4));
    if (match.captured(2) != u"/com/kestrelix/ozna/scheduler/schedulerobj"_s)
        shown += u" (from %1)"_s.arg(match.captured(2));
    return shown;
}

QStringList UpTo(const QStringList& lines, unsigned int maxLevel)
{
    QStringList kept;
    for (const QString& line : lines)
    {
        if (!line.isEmpty() && (!line[0].isDigit() || static_cast<unsigned int>(line[0].digitValue()) <= maxLevel))
            kept.append(line);
    }
    return kept;
}

} // namespace

DaemonProcess::DaemonProcess(const QString& program)
    : m_environment(QProcessEnvironment::systemEnvironment())
    , m_logFile(m_folder.filePath(u"stderr"_s))
{
    m_process.setStandardErrorFile(m_logFile.fileName());
    m_process.setStandardOutputFile(OutputFile());
    BuiltProgram::Set(m_process, program);
    m_environment.insert(u"OZNA_LOG_LEVEL"_s, u"9"_s);
    m_environment.insert(u"TZ"_s, u"UTC"_s);
}

DaemonProcess::~DaemonProcess()
{
    m_process.kill();
    m_process.waitForFinished();
}

void DaemonProcess::LogTo(const QString& file)
{
    m_process.setStandardErrorFile(file, QIODevice::Append);
    m_logFile.setFileName(QString());
}

void DaemonProcess::DropPrivileges()
{
    // Runs between fork and exec. Root that may take a capability out of what an exec gives back does so; where it may
    // not, no new privileges come with the exec either. Who has no such capability at all loses nothing.
    m_process.setChildProcessModifier([] {
        ::prctl(PR_CAPBSET_DROP, CAP_DAC_OVERRIDE, 0, 0, 0);
        ::prctl(PR_CAPBSET_DROP, CAP_DAC_READ_SEARCH, 0, 0, 0);
        ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
        __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
        const std::array<__user_cap_data_struct, _LINUX_CAPABILITY_U32S_3> none{};
        if (::syscall(SYS_capset, &header, none.data()) != 0)
            ::_exit(EXIT_FAILURE);
    });
}

void DaemonProcess::CloseAtStart(const QList<int>& descriptors)
{
    // Runs between fork and exec.
    m_process.setChildProcessModifier([descriptors] {
        for (const int descriptor : descriptors)
            ::close(descriptor);
    });
}

void DaemonProcess::Start()
{
    m_process.setProcessEnvironment(m_environment);
    m_process.start(QIODevice::ReadOnly);
    if (!m_process.waitForStarted())
        qFatal("cannot start %s: %s", qPrintable(m_process.program()), qPrintable(m_process.errorString()));
    if (!m_logFile.fileName().isEmpty() && !m_logFile.open(QIODevice::ReadOnly))
        qFatal("cannot read the daemon's log: %s", qPrintable(m_logFile.errorString()));
}

void DaemonProcess::Signal(int signal) const
{
    if (::kill(static_cast<pid_t>(m_process.processId()), signal) != 0)
        qFatal("cannot signal the daemon");
}

bool DaemonProcess::WaitUntilHalted() const
{
    return WaitUntil([this] {
        QFile file(u"/proc/%1/stat"_s.arg(Pid()));
        // The state follows the name, which is in parentheses.
        return file.open(QIODevice::ReadOnly) && file.readAll().contains(") T ");
    });
}

QString DaemonProcess::Opened(int descriptor) const
{
    std::array<char, 100> target{};
    const QByteArray link = u"/proc/%1/fd/%2"_s.arg(Pid()).arg(descriptor).toLatin1();
    const ssize_t size = ::readlink(link.constData(), target.data(), target.size());
    return QString::fromLocal8Bit(target.data(), std::max<ssize_t>(size, 0));
}

int DaemonProcess::WaitForExit()
{
    if (!WaitUntil([this] {
            Read();
            return m_process.state() == QProcess::NotRunning;
        }))
        return -1;
    return m_process.exitStatus() == QProcess::NormalExit ? m_process.exitCode() : -1;
}

QStringList DaemonProcess::Log(unsigned int maxLevel)
{
    Read();
    return UpTo(m_log, maxLevel);
}

QStringList DaemonProcess::Take(unsigned int maxLevel)
{
    Read();
    const QStringList lines = UpTo(m_log.mid(m_taken), maxLevel);
    m_taken = m_log.size();
    return lines;
}

bool DaemonProcess::WaitForLog(const QString& shown)
{
    return WaitUntil([&] {
        Read();
        return m_log.indexOf(shown, m_taken) >= 0;
    });
}

QByteArray DaemonProcess::Output() const
{
    QFile file(OutputFile());
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(unreadable)");
}

QString DaemonProcess::OutputFile() const
{
    return m_folder.filePath(u"stdout"_s);
}

void DaemonProcess::Read()
{
    if (m_logFile.isOpen())
        m_unread += m_logFile.readAll();
    qsizetype begin = 0;
    qsizetype end = 0;
    while ((end = m_unread.indexOf('\n', begin)) >= 0)
    {
        m_log.append(Shown(m_unread.mid(begin, end - begin)));
        begin = end + 1;
    }
    m_unread.remove(0, begin);
}

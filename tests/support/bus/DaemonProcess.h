#pragma once

#include <QByteArray>
#include <QFile>
#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>

// The daemon under test, a process of its own.
class DaemonProcess final
{
public:
    // program: the name of an executable of the build folder.
    explicit DaemonProcess(const QString& program = QStringLiteral("ozna-scheduler-local"));
    ~DaemonProcess();

    DaemonProcess(const DaemonProcess&) = delete;
    DaemonProcess& operator=(const DaemonProcess&) = delete;

    QProcessEnvironment& Environment() { return m_environment; }

    // From the next start on: standard error goes to that file, pipe or device, and what is logged is not read here.
    void LogTo(const QString& file);

    // From the next start on: file permissions count for the daemon, also when root runs the tests.
    void DropPrivileges();

    // From the next start on: the daemon begins with these descriptors closed.
    void CloseAtStart(const QList<int>& descriptors);

    void Start();

    // Sends a signal to the process.
    void Signal(int signal) const;

    // Waits until a signal has stopped the process, which SIGCONT has it go on from.
    [[nodiscard]] bool WaitUntilHalted() const;

    // What the descriptor is: the path of a file, "socket:[...]"; empty when it is closed.
    [[nodiscard]] QString Opened(int descriptor) const;

    // Waits for the end. The exit status, as the shell shows it; -1 when it does not end or crashes.
    [[nodiscard]] int WaitForExit();

    [[nodiscard]] bool IsRunning() const { return m_process.state() == QProcess::Running; }
    [[nodiscard]] qint64 Pid() const { return m_process.processId(); }

    // All records written so far, up to that level: "4 [main.cpp] Creating Scheduler...", without the line number, and
    // with " (from <origin>)" behind where the origin is another than the scheduler's. What is no record stands as it
    // is.
    [[nodiscard]] QStringList Log(unsigned int maxLevel = 9);

    // The records since the last Take or Skip, up to that level.
    [[nodiscard]] QStringList Take(unsigned int maxLevel = 9);

    // Waits until a record of that text, as Log shows it, has come since the last Take or Skip.
    [[nodiscard]] bool WaitForLog(const QString& shown);

    // The whole of standard output so far.
    [[nodiscard]] QByteArray Output() const;

private:
    [[nodiscard]] QString OutputFile() const;
    void Read();

    QTemporaryDir m_folder;
    QProcess m_process;
    QProcessEnvironment m_environment;
    // A file, not a pipe: what the process has written before it answers a call can be read once the answer is there.
    QFile m_logFile;
    QByteArray m_unread;
    QStringList m_log;
    qsizetype m_taken = 0;
};

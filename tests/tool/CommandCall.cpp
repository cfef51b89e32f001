#include "CommandCall.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>

#include <stdexcept>

namespace
{

constexpr int DEADLINE_MS = 50000;
constexpr int SIGNALLED = 128;

} // namespace

CommandCall::CommandCall()
{
    if (!m_ownFolder.emplace().isValid())
        throw std::runtime_error(m_ownFolder->errorString().toStdString());
    m_folder = m_ownFolder->path();
}

CommandCall::CommandCall(const QString& folder)
    : m_folder(folder)
{
}

void CommandCall::Write(const QString& name, const QByteArray& content) const
{
    QFile file(m_folder + u'/' + name);
    if (!QDir().mkpath(QFileInfo(file.fileName()).path()) || !file.open(QIODevice::WriteOnly) ||
        file.write(content) != content.size())
        throw std::runtime_error(file.errorString().toStdString());
}

CommandCall::Result CommandCall::Run(const QStringList& arguments, const QByteArray& input) const
{
    return RunProgram(QStringLiteral(OZNA_TOOL), arguments, input);
}

CommandCall::Result CommandCall::RunProgram(const QString& program, const QStringList& arguments,
                                            const QByteArray& input) const
{
    QProcess process;
    process.setWorkingDirectory(m_folder);
    process.start(program, arguments);
    if (!process.waitForStarted(DEADLINE_MS))
        throw std::runtime_error(process.errorString().toStdString());
    process.write(input);
    process.closeWriteChannel();
    if (!process.waitForFinished(DEADLINE_MS))
        throw std::runtime_error("does not end: " + arguments.join(u' ').toStdString());
    const int status =
        process.exitStatus() == QProcess::CrashExit ? SIGNALLED + process.exitCode() : process.exitCode();
    return {status, QString::fromUtf8(process.readAllStandardOutput()),
            QString::fromUtf8(process.readAllStandardError())};
}

#include "WholeFile.h"

#include "base/ToolError.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QScopeGuard>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace
{

[[noreturn]] void Fail(const QString& path, const QString& reason)
{
    throw ToolError(QStringLiteral("%1: %2").arg(path, reason));
}

[[noreturn]] void FailWithError(const QString& path)
{
    Fail(path, QString::fromLocal8Bit(std::strerror(errno)));
}

// Has what was made or renamed in the folder reach the disk.
void Settle(const QString& folder)
{
    const int descriptor = ::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0)
        FailWithError(folder);
    const auto close = qScopeGuard([=] { static_cast<void>(::close(descriptor)); });
    if (::fsync(descriptor) != 0)
        FailWithError(folder);
}

} // namespace

std::optional<QByteArray> WholeFile::Read(const QString& path)
{
    QFile file(path);
    if (!file.exists())
        return {};
    if (!QFileInfo(path).isFile())
        Fail(path, QStringLiteral("is not a file"));
    if (!file.open(QIODevice::ReadOnly))
        Fail(path, file.errorString());
    const QByteArray content = file.readAll();
    if (file.error() != QFileDevice::NoError)
        Fail(path, file.errorString());
    return content;
}

void WholeFile::Write(const QString& path, const QByteArray& content)
{
    const QString folder = QFileInfo(path).path();
    if (!QDir().mkpath(folder))
        FailWithError(folder);
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size() || !file.flush())
        Fail(path, file.errorString());
    if (::fsync(file.handle()) != 0)
        FailWithError(path);
    Settle(folder);
}

void WholeFile::Place(const QString& made, const QString& place)
{
    const bool isExchange = QFileInfo(place).isDir();
    // Whoever could read the earlier file can read this one.
    if (QFileInfo(place).isFile() && !QFile::setPermissions(made, QFile::permissions(place)))
        FailWithError(made);
    if (::renameat2(AT_FDCWD, QFile::encodeName(made).constData(), AT_FDCWD, QFile::encodeName(place).constData(),
                    isExchange ? RENAME_EXCHANGE : 0U) != 0)
        FailWithError(place);
    Settle(QFileInfo(place).path());
}

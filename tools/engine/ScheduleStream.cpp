#include "ScheduleStream.h"

#include "base/ToolError.h"

#include <QFile>

#include <cstdio>
#include <sys/stat.h>

namespace
{

const QString STANDARD_INPUT = QStringLiteral("-");

} // namespace

bool ScheduleStream::IsStandardInput(const QString& name)
{
    return name == STANDARD_INPUT;
}

bool ScheduleStream::Is(const QString& name)
{
    struct stat status = {};
    return IsStandardInput(name) ||
           (::stat(QFile::encodeName(name).constData(), &status) == 0 && S_ISFIFO(status.st_mode));
}

QByteArray ScheduleStream::Read(const QString& name)
{
    const QString shown = IsStandardInput(name) ? QStringLiteral("standard input") : name;
    QFile file(name);
    const bool isOpen = IsStandardInput(name) ? file.open(stdin, QIODevice::ReadOnly) : file.open(QIODevice::ReadOnly);
    QByteArray content;
    // A sequential file has no size to ask for.
    while (isOpen && content.size() <= MOST_BYTES)
    {
        const QByteArray more = file.read(MOST_BYTES + 1 - content.size());
        if (more.isEmpty())
            break;
        content += more;
    }
    if (!isOpen || file.error() != QFileDevice::NoError)
        throw ToolError(QStringLiteral("%1: %2").arg(shown, file.errorString()));
    if (content.size() > MOST_BYTES)
        throw ToolError(QStringLiteral("%1: is longer than 64 MB").arg(shown));
    return content;
}

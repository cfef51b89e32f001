#include "FolderLock.h"

#include "base/ToolError.h"

#include <QFile>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

FolderLock::FolderLock(const QString& folder)
    : m_descriptor(::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC))
{
    if (m_descriptor >= 0 && ::flock(m_descriptor, LOCK_EX | LOCK_NB) == 0)
        return;
    const bool isHeld = errno == EWOULDBLOCK;
    const QString reason =
        isHeld ? QStringLiteral("another deployment is under way") : QString::fromLocal8Bit(std::strerror(errno));
    if (m_descriptor >= 0)
        ::close(m_descriptor);
    throw ToolError(QStringLiteral("%1: %2").arg(folder, reason));
}

FolderLock::~FolderLock()
{
    ::close(m_descriptor);
}

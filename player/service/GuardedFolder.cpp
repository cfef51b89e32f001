#include "GuardedFolder.h"

#include "PlayerLog.h"
#include "text/Printable.h"

#include <QDir>
#include <QFileInfo>

namespace
{

bool IsBelow(const QString& path, const QString& folder)
{
    return path.startsWith(folder.endsWith(u'/') ? folder : folder + u'/');
}

} // namespace

bool GuardedFolder::LeadsOut(const QString& path) const
{
    const QString real = QFileInfo(path).canonicalFilePath();
    const QString folder = QFileInfo(m_path).canonicalFilePath();
    // Of a file that is not there, only the name can be judged.
    if (real.isEmpty() || folder.isEmpty())
        return !IsBelow(QDir::cleanPath(path), m_path);
    return !IsBelow(real, folder);
}

GuardedFolder::Found GuardedFolder::Find(const QString& name) const
{
    const QString path = QDir::isAbsolutePath(name) ? name : m_path + u'/' + name;
    if (name.isEmpty() || name.contains(QChar::Null) || LeadsOut(path))
    {
        PLAYER_LOG(LEVEL_ERROR, "\"%s\" is no name within %s",
                   Printable(QStringView(name).left(Log::RECORD_SIZE)).Text(), qPrintable(m_path));
        return {Status::BAD_NAME, {}};
    }
    const QFileInfo file(path);
    if (!file.isFile() || !file.isReadable())
    {
        PLAYER_LOG(LEVEL_ERROR, "%s %s", Printable(QStringView(path).left(Log::RECORD_SIZE)).Text(),
                   file.exists() ? "is no file that can be read" : "is not there");
        return {Status::NOT_FOUND, {}};
    }
    return {Status::ACCEPTED, file.canonicalFilePath()};
}

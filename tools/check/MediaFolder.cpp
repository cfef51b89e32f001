#include "MediaFolder.h"

#include "base/ToolError.h"
#include "sound/SoundFile.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace
{

// An "è" may be one character or two, and looks the same.
QString Folded(const QString& name)
{
    return name.normalized(QString::NormalizationForm_C).toCaseFolded();
}

QString WithoutEnding(const QString& name)
{
    return Folded(QFileInfo(name).completeBaseName());
}

template <typename Key> QString FirstAlike(const QStringList& names, const QString& name, Key key)
{
    const auto alike = std::ranges::find(names, key(name), key);
    return alike == names.end() ? QString() : *alike;
}

} // namespace

MediaFolder::MediaFolder(const QString& folder)
    : m_folder(folder)
{
    if (!SoundFile::IsSupported())
        throw ToolError(QStringLiteral("--media: this program was built without libsndfile, and cannot read sounds"));
    if (!QFileInfo(folder).isDir())
        throw ToolError(QStringLiteral("--media: %1: is not a folder").arg(folder));
}

const QStringList& MediaFolder::Names(const QString& below, bool files)
{
    const std::pair key(below, files);
    const auto known = m_names.constFind(key);
    if (known != m_names.constEnd())
        return *known;
    const QDir::Filters kinds = files ? QDir::Files : QDir::Dirs | QDir::NoDotAndDotDot;
    return *m_names.insert(key, QDir(m_folder + u'/' + below).entryList(kinds | QDir::Hidden, QDir::Name));
}

MediaFolder::Place MediaFolder::Find(const QString& name)
{
    const QStringList parts = name.split(u'/', Qt::SkipEmptyParts);
    QString found; // with a "/" behind each folder
    for (qsizetype i = 0; i < parts.size(); ++i)
    {
        const bool isFile = i + 1 == parts.size();
        const QStringList& names = Names(found, isFile);
        QString alike = names.contains(parts[i]) ? parts[i] : FirstAlike(names, parts[i], Folded);
        if (alike.isEmpty())
        {
            alike = isFile ? FirstAlike(names, parts[i], WithoutEnding) : QString();
            return {{}, {}, alike.isEmpty() ? QString() : found + alike};
        }
        found += isFile ? alike : alike + u'/';
    }
    if (found == parts.join(u'/') && !found.isEmpty())
        return {m_folder + u'/' + found, {}, {}};
    return {{}, found, {}};
}

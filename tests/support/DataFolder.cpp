#include "DataFolder.h"

#include "DataRoot.h"

#include <QDir>
#include <QFile>

#include <stdexcept>

using namespace Qt::StringLiterals;

namespace
{

DataFolder* m_current = nullptr;

void Write(const QString& path, const QByteArray& content)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) || file.write(content) != content.size())
        throw std::runtime_error("data file");
}

} // namespace

// Without a data folder no file is found.
QString DataRoot()
{
    return m_current != nullptr ? m_current->Path() : u"/nonexistent"_s;
}

DataFolder::DataFolder()
    : m_before(m_current)
{
    const QDir folder(m_folder.path());
    if (!m_folder.isValid() || !folder.mkdir(u"schedule"_s) || !folder.mkdir(u"playlists"_s))
        throw std::runtime_error("data folder");
    m_current = this;
}

DataFolder::~DataFolder()
{
    m_current = m_before;
}

QString DataFolder::SchedulePath(const QString& name) const
{
    return m_folder.filePath(u"schedule/"_s + name);
}

QString DataFolder::PlaylistPath(const QString& name) const
{
    return m_folder.filePath(u"playlists/"_s + name);
}

void DataFolder::WriteSchedule(const QByteArray& content, const QString& name) const
{
    Write(SchedulePath(name), content);
}

void DataFolder::WritePlaylist(const QByteArray& content, const QString& name) const
{
    Write(PlaylistPath(name), content);
}

#include "PlaylistFolder.h"

#include <QDir>
#include <QFileInfo>

#include <array>

namespace
{

constexpr std::array PLACES{"playlists", "../playlists"};

} // namespace

PlaylistFolder PlaylistFolder::Near(const QString& folder)
{
    QStringList missing;
    for (const char* place : PLACES)
    {
        const QString path = QDir::cleanPath(folder + u'/' + QLatin1String(place));
        if (QFileInfo(path).isDir())
            return {path, {}};
        missing.append(path);
    }
    return {folder, missing};
}

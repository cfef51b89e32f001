#include "PlaylistReading.h"

#include "engine/DaemonLog.h"
#include "tasks/PlayPlaylist.h"
#include "text/TextFile.h"

#include <algorithm>
#include <array>
#include <optional>

namespace
{

// The record that the daemon writes of every line of a playlist's file.
struct Row
{
    const char* record;
    PlaylistReading::LineKind kind;
};

constexpr std::array TABLE{
    Row{"Playlist line found: ", PlaylistReading::LineKind::TRACK},
    Row{"Playlist line ignored: ", PlaylistReading::LineKind::IGNORED},
    Row{"Playlist line error: ", PlaylistReading::LineKind::BROKEN},
};

constexpr const char* EMPTY_RECORD = "Playlist is empty";
const QString KEEP_VOLUME = QStringLiteral("-1");

} // namespace

PlaylistReading::PlaylistReading(const QString& name)
{
    DaemonLog log(LEVEL_TRACE);
    std::optional<PlayPlaylist> playlist;
    try
    {
        playlist.emplace(QString(), name, KEEP_VOLUME, QString());
    }
    catch (const std::exception& error)
    {
        m_rejection = QString::fromLatin1(error.what());
    }
    TextFile file(PlayPlaylist::GetPlaylistsPath() + u'/' + name);
    const bool isOpen = file.Open();
    size_t tracks = 0;
    for (const DaemonRecord& record : log.Take())
    {
        if (!m_rejection.isEmpty() && record.text.startsWith(QLatin1String(EMPTY_RECORD)))
            m_rejection = record.text;
        const auto* const row = std::ranges::find_if(
            TABLE, [&](const Row& each) { return record.text.startsWith(QLatin1String(each.record).trimmed()); });
        QString text;
        if (row == TABLE.end() || !isOpen || !file.ReadLine(text))
            continue;
        const bool isTrack = row->kind == LineKind::TRACK && playlist && tracks < playlist->Tracks().size();
        m_lines.append({file.LineNumber(), text, row->kind, isTrack ? playlist->Tracks()[tracks++].duration_s : 0,
                        file.HasLineEnd(), file.HasLoneReturn()});
    }
}

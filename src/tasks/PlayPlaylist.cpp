#include "PlayPlaylist.h"

#include "DataRoot.h"
#include "text/Printable.h"

namespace
{

// Origins of a few records: required as they are, though other services' names.
constexpr const char* FILE_ORIGIN = "/com/kestrelix/ozna/soundmanager/soundobj";
constexpr const char* TRACK_ORIGIN = "/com/kestrelix/ozna/audiomanager/audioobj";
constexpr const char* STOP_ORIGIN = "/com/kestrelix/ozna/updatemanager/updateobj";

[[noreturn]] void Reject(Rejection::Cause cause, QStringList reasons, const QString& file = {})
{
    reasons.append(OZNA_TELL(LEVEL_ERROR, "TASK CREATION FAILED"));
    throw Rejection(cause, reasons.join(QStringLiteral("; ")), file);
}

} // namespace

PlayPlaylist::PlayPlaylist(const QString& time, const QString& name, const QString& volume, const QString& identifier)
    : PlayTask(TASK_PLAY_PLAYLIST, identifier, volume, OZNA_LOG_SITE)
    , m_startTime(SoundManager::ParseTime(time))
    , m_name(SharedValues::Of(name))
    , m_tracks(LoadPlaylistInfo())
{
    OZNA_LOG(LEVEL_NORMAL, "TASK CREATED | PlayPlaylist: %s at %s (%d s, vol=%d)", Printable(m_name).Text(),
             Printable(SoundManager::FormatTime(m_startTime)).Text(), static_cast<int>(m_tracks->Total_s()), Volume());
}

PlayPlaylist::~PlayPlaylist()
{
    if (!m_running)
        return;
    OZNA_LOG_FROM(STOP_ORIGIN, LEVEL_NORMAL, "Scheduled Playlist %s running: stop it", qPrintable(m_name));
    if (!StopPlayback())
        OZNA_LOG(LEVEL_WARNING, "Impossible to stop scheduled playlist");
}

QString PlayPlaylist::GetPlaylistsPath()
{
    return DataRoot() + QStringLiteral("/playlists");
}

unsigned int PlayPlaylist::GetDelayable_s() const
{
    return m_tracks->LastStart_s();
}

// The file is read once.
unsigned int PlayPlaylist::GetMostDelayable_s() const
{
    return GetDelayable_s();
}

void PlayPlaylist::SetCompleted(bool completed)
{
    m_completed = completed;
}

SharedValues::Tracks PlayPlaylist::LoadPlaylistInfo()
{
    if (m_name.isEmpty())
        Reject(Rejection::Cause::PLAYLIST_FILE,
               {OZNA_TELL_FROM(FILE_ORIGIN, LEVEL_ERROR, "Playlist name not specified")});
    const QString path = GetPlaylistsPath() + QLatin1Char('/') + m_name;
    OZNA_LOG_FROM(FILE_ORIGIN, LEVEL_TRACE, "Loading playlist from %s", Printable(path).Text());
    PlaylistFile playlist(path);
    Open(playlist, path);
    const TextFile& file = playlist.File();
    TrackList tracks;
    for (PlaylistFile::Line line; playlist.ReadLine(line);)
        Take(line, tracks);
    if (!file.ReadError().isEmpty())
        NoteWarning(
            TaskWarning::NO_PARAMETER,
            OZNA_TELL_FROM(FILE_ORIGIN, LEVEL_WARNING, "Playlist file read error: %s", qPrintable(file.ReadError())));
    if (!file.HasLineEnd())
        NoteWarning(TaskWarning::NO_PARAMETER,
                    OZNA_TELL_FROM(FILE_ORIGIN, LEVEL_WARNING,
                                   "Playlist file may be cut: line %d has no line end (path=%s)", file.LineNumber(),
                                   qPrintable(path)));
    if (tracks.IsEmpty())
    {
        OZNA_LOG_FROM(TRACK_ORIGIN, LEVEL_NORMAL, "Playlist is empty");
        Reject(Rejection::Cause::PLAYLIST_EMPTY, {});
    }
    OZNA_LOG_FROM(TRACK_ORIGIN, LEVEL_NORMAL, "Playlist loaded (%d tracks)", static_cast<int>(tracks.Tracks().size()));
    return SharedValues::Of(tracks);
}

void PlayPlaylist::Open(PlaylistFile& playlist, const QString& path)
{
    if (playlist.Open())
        return;
    QStringList reasons{
        OZNA_TELL_FROM(FILE_ORIGIN, LEVEL_ERROR, "Playlist file open failed (path=%s)", qPrintable(path))};
    const TextFile& file = playlist.File();
    if (file.Exists())
        reasons.append(OZNA_TELL_FROM(FILE_ORIGIN, LEVEL_ERROR,
                                      "Playlist file (path=%s) exists: why I couldn't open it ?", qPrintable(path)));
    if (!file.OpenError().isEmpty())
        OZNA_LOG_FROM(FILE_ORIGIN, LEVEL_WARNING, "Playlist file open error: %s", qPrintable(file.OpenError()));
    Reject(Rejection::Cause::PLAYLIST_FILE, reasons, path);
}

void PlayPlaylist::Take(const PlaylistFile::Line& line, TrackList& tracks)
{
    const QStringView shown = QStringView(line.text).left(Log::RECORD_SIZE);
    switch (line.kind)
    {
    case PlaylistFile::LineKind::IGNORED:
        OZNA_LOG_FROM(FILE_ORIGIN, LEVEL_TRACE, "Playlist line ignored: %s", Printable(shown).Text());
        break;
    case PlaylistFile::LineKind::BROKEN:
        OZNA_LOG_FROM(TRACK_ORIGIN, LEVEL_NORMAL, "Playlist line error: %s)", Printable(shown).Text());
        break;
    case PlaylistFile::LineKind::TRACK:
        OZNA_LOG_FROM(TRACK_ORIGIN, LEVEL_TRACE, "Playlist line found: %s|%d)", Printable(line.track.file).Text(),
                      line.track.duration_s);
        tracks.Append({SharedValues::Of(line.track.file), line.track.duration_s});
        break;
    }
}

void PlayPlaylist::PrepareDelayed(unsigned int delay_s)
{
    const auto delay = static_cast<int>(delay_s);
    if (delay <= 0)
    {
        m_firstTrack = 1;
        OZNA_LOG(LEVEL_DETAIL, "PlayPlaylist NOT delayed: will start from track %d", m_firstTrack);
        return;
    }
    if (delay_s >= m_tracks->Total_s())
    {
        OZNA_LOG(LEVEL_WARNING, "PlayPlaylist can't be prepared as delayed: delay (%d s) >= duration (%d s))", delay,
                 static_cast<int>(m_tracks->Total_s()));
        return;
    }
    m_firstTrack = 1;
    qint64 remaining_s = delay;
    for (const PlaylistItem& item : Tracks())
    {
        ++m_firstTrack;
        remaining_s -= qint64{item.duration_s} + PLAYLIST_GAP_S;
        if (remaining_s < 0)
            break;
    }
    OZNA_LOG(LEVEL_DETAIL, "PlayPlaylist prepared as delayed (%s, file %d)",
             qPrintable(SoundManager::FormatTime(m_startTime)), m_firstTrack);
}

bool PlayPlaylist::Run()
{
    m_completed = false;
    BeginRequest();
    OZNA_LOG(LEVEL_NORMAL, "Requesting PlayPlaylist...");
    const PeerReply reply = SoundManager::PlayPlaylist(m_name, m_identifier, m_firstTrack, m_startTime);
    m_running = reply.Report([](const char* error) { OZNA_LOG(LEVEL_ERROR, "PlayPlaylist request error: %s", error); },
                             [](int status) { OZNA_LOG(LEVEL_ERROR, "PlayPlaylist error: %d", status); },
                             [&] {
                                 OZNA_LOG(LEVEL_NORMAL, "TASK START@TIME REQUESTED | PlayPlaylist: %s|%d|%s|%d",
                                          qPrintable(m_name), m_firstTrack,
                                          qPrintable(SoundManager::FormatTime(m_startTime)), Volume());
                                 BeginWait(reply, &SoundSignals::PlayPlaylistCompleted, this,
                                           &PlayPlaylist::OnPlayPlaylistCompleted, OZNA_LOG_SITE);
                             });
    m_completed = !m_running;
    return m_running;
}

void PlayPlaylist::OnPlayPlaylistCompleted(const QString& name)
{
    Q_UNUSED(name)
    OZNA_LOG(LEVEL_NORMAL, "TASK COMPLETED | PlayPlaylist: %s", qPrintable(m_name));
    EndWait(OZNA_LOG_SITE);
    m_completed = true;
    Q_EMIT TaskCompleted();
}

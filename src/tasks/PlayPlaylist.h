#pragma once

#include "PlayTask.h"
#include "text/PlaylistFile.h"
#include "text/Rejection.h"
#include "text/SharedValues.h"

#include <QTime>

#include <vector>

// Plays a playlist at a given time of day, joined at a later track when it is started late, and runs until the sound
// manager reports a playlist's end.
class PlayPlaylist final : public PlayTask
{
    Q_OBJECT
public:
    // time: "hh:mm:ss", anything else is sent as an empty time. name: the file in the playlist folder.
    // volume: see PlayTask. Takes the tracks of the file (see PlaylistFile). Throws Rejection when no track can be
    // loaded.
    PlayPlaylist(const QString& time, const QString& name, const QString& volume, const QString& identifier);

    // Stops the playlist when it is still running.
    ~PlayPlaylist() override;

    // The start of the last track: later than that there is nothing left to join.
    unsigned int GetDelayable_s() const override;
    unsigned int GetMostDelayable_s() const override;

    // Chooses the first track to play: the one after the track that would be playing after delay_s seconds, as a track
    // is never entered midway. Counts from the first track each time.
    void PrepareDelayed(unsigned int delay_s) override;

    bool Run() override;
    void SetCompleted(bool completed) override;
    bool IsCompleted() const { return m_completed; }

    // In the order of the file; at least one.
    const std::vector<PlaylistItem>& Tracks() const { return m_tracks->Tracks(); }

    // The folder of the playlist files, without a trailing separator.
    static QString GetPlaylistsPath();

Q_SIGNALS:
    void TaskCompleted();

private Q_SLOTS:
    // name: what the signal names; whatever playlist it is, the task has ended.
    void OnPlayPlaylistCompleted(const QString& name);

private:
    [[nodiscard]] QString GetSubject() const override { return m_name; }
    [[nodiscard]] const char* Source() const override { return SoundManager::SOURCE_PLAYLIST; }

    [[nodiscard]] SharedValues::Tracks LoadPlaylistInfo();
    static void Open(PlaylistFile& playlist, const QString& path);
    static void Take(const PlaylistFile::Line& line, TrackList& tracks);

    const QTime m_startTime;
    const QString m_name;
    const SharedValues::Tracks m_tracks; // at least one
    int m_firstTrack = 1;                // counted from 1
    bool m_completed = false;
};

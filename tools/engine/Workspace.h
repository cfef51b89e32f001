#pragma once

#include "PlaylistFolder.h"
#include "RemovalAtSignal.h"

#include <QString>
#include <QTemporaryDir>

#include <optional>

// A data folder for the daemon's code: a new one, gone with the object, that holds the one schedule file and the
// playlists. Nothing of the user's is written to, and no bus is reached.
//
// The address of the stream server is SERVER: the device's configuration is not known here.
class Workspace final
{
public:
    static constexpr const char* SERVER = "<ServerIp>";

    // file: the schedule, or a stream by which it comes, whose folder is the one of the process; a stream can be read
    // once. playlists: the folder of the playlists; empty: see PlaylistFolder. Throws ToolError when the schedule or
    // the folder cannot be read.
    Workspace(const QString& file, const QString& playlists);
    ~Workspace();

    Workspace(const Workspace&) = delete;
    Workspace& operator=(const Workspace&) = delete;

    // Has the daemon's code see that workspace for as long as the object lives: of several objects the last one's.
    class Use final
    {
    public:
        // workspace: outlives the object.
        explicit Use(const Workspace& workspace);
        ~Use();

        Use(const Use&) = delete;
        Use& operator=(const Use&) = delete;

    private:
        const Workspace* const m_before;
    };

    // Where it is.
    [[nodiscard]] QString Root() const { return m_folder.path(); }

    // The schedule's name in the data folder, for a Scheduler.
    [[nodiscard]] static QString FileName();

    // The path of that file.
    [[nodiscard]] QString SchedulePath() const;

    // text, of the daemon, with the folder of the playlists as the user knows it.
    [[nodiscard]] QString Readable(QString text) const;

    // As given.
    [[nodiscard]] QString File() const { return m_file; }

    // Where playlists are looked for.
    [[nodiscard]] const PlaylistFolder& Playlists() const { return m_playlists; }

    // Sets the time zone of the process: a name of the system's time-zone files, as "Europe/Rome"; an empty one leaves
    // it as it is. Throws ToolError for one that the system does not have.
    static void SetTimeZone(const QString& zone);

    // Keeps the daemon's code away from every bus (see SessionBus). If the environment has no time zone, sets the
    // machine's: the C library would otherwise look for a new one at every reading of the clock. Called once, before
    // anything else.
    static void PrepareProcess();

private:
    void Link(const QString& target, const QString& name) const;
    [[nodiscard]] QString ConfigurationPath() const;
    void WriteConfiguration() const;
    static void Write(const QString& name, const QByteArray& content);
    [[nodiscard]] static std::optional<QByteArray> ContentOf(const QString& file);

    const QString m_file;
    PlaylistFolder m_playlists;
    const std::optional<QByteArray> m_content; // of a stream
    QTemporaryDir m_folder;
    std::optional<RemovalAtSignal> m_removal;
};

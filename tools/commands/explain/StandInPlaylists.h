#pragma once

#include "engine/ScheduleLine.h"
#include "engine/Workspace.h"

#include <QTemporaryDir>

#include <optional>

// Lets the tool read lines that come from no file: a missing playlist is replaced by one with a single track.
class StandInPlaylists final
{
public:
    // playlists: the folder of the playlists; empty: none is at hand. Throws ToolError when it is no folder.
    explicit StandInPlaylists(const QString& playlists);

    // Reads a line as the daemon does. Without a folder of playlists, makes the playlist that the line names.
    [[nodiscard]] ScheduleLine Read(const QString& text, int number);

    // text without the folder that stands in, which nobody knows.
    [[nodiscard]] QString Readable(QString text) const;

    [[nodiscard]] const Workspace& GetWorkspace() const { return *m_workspace; }

    // Whether the tracks are those of the playlists that were given.
    [[nodiscard]] bool AreTracksKnown() const { return m_areTracksKnown; }

private:
    [[nodiscard]] QString PrepareSchedule() const;
    [[nodiscard]] bool MakeMissing(const QString& path) const;

    const bool m_areTracksKnown;
    QTemporaryDir m_folder;
    std::optional<Workspace> m_workspace;
};

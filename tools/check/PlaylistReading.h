#pragma once

#include <QList>
#include <QString>

#include <cstdint>

// What the daemon's own code makes of a playlist's file, line by line. Needs a Workspace.
class PlaylistReading final
{
public:
    enum class LineKind : std::uint8_t
    {
        TRACK,
        IGNORED,
        BROKEN, // told as an error, and no track
    };

    struct Line
    {
        int number; // counted from 1
        QString text;
        LineKind kind;
        int duration_s;  // of a track
        bool hasLineEnd; // see TextFile
        bool hasLoneReturn;
    };

    // name: in the folder of the playlists.
    explicit PlaylistReading(const QString& name);

    // Why no task can be made of it, in the daemon's words; empty where one can.
    [[nodiscard]] QString Rejection() const { return m_rejection; }

    [[nodiscard]] const QList<Line>& Lines() const { return m_lines; }

private:
    QString m_rejection;
    QList<Line> m_lines;
};

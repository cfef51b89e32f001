#pragma once

#include "PlaylistItem.h"
#include "TextFile.h"

#include <QString>

#include <cstdint>

// A playlist file, read line by line. A line is a track: file name, ";", duration in whole seconds; a duration that is
// no number counts as 0. Lines of 9 characters or fewer, blank lines and comments (see TextFile) are ignored.
class PlaylistFile final
{
public:
    enum class LineKind : std::uint8_t
    {
        TRACK,
        IGNORED,
        BROKEN, // no track
    };

    struct Line
    {
        LineKind kind = LineKind::IGNORED;
        QString text;
        PlaylistItem track; // of the kind TRACK
    };

    explicit PlaylistFile(const QString& path);

    // False when the file cannot be opened.
    [[nodiscard]] bool Open() { return m_file.Open(); }

    // Reads the next line; false when there is none, at the end of the file or where reading fails.
    [[nodiscard]] bool ReadLine(Line& line);

    // What there is to know of the file, and of the line read last.
    [[nodiscard]] const TextFile& File() const { return m_file; }

private:
    TextFile m_file;
};

#pragma once

#include "DataFolder.h"
#include "LogRecorder.h"

// The records of a playlist that is read, with the origins under which log readers look for them.
namespace PlaylistLines
{

inline constexpr const char* FILE_ORIGIN = "/com/kestrelix/ozna/soundmanager/soundobj";
inline constexpr const char* TRACK_ORIGIN = "/com/kestrelix/ozna/audiomanager/audioobj";

inline LogLine Loading(const QByteArray& path)
{
    return {"9 [tasks/PlayPlaylist.cpp] Loading playlist from " + path, FILE_ORIGIN};
}

inline LogLine Ignored(const QByteArray& line)
{
    return {"9 [tasks/PlayPlaylist.cpp] Playlist line ignored: " + line, FILE_ORIGIN};
}

inline LogLine Found(const QByteArray& file, int duration_s)
{
    return {"9 [tasks/PlayPlaylist.cpp] Playlist line found: " + file + '|' + QByteArray::number(duration_s) + ')',
            TRACK_ORIGIN};
}

inline LogLine Wrong(const QByteArray& line)
{
    return {"4 [tasks/PlayPlaylist.cpp] Playlist line error: " + line + ')', TRACK_ORIGIN};
}

inline LogLine NotOpened(const QByteArray& path)
{
    return {"1 [tasks/PlayPlaylist.cpp] Playlist file open failed (path=" + path + ")", FILE_ORIGIN};
}

inline LogLine OpenError(const QByteArray& reason)
{
    return {"2 [tasks/PlayPlaylist.cpp] Playlist file open error: " + reason, FILE_ORIGIN};
}

inline LogLine Cut(const QByteArray& path, int line)
{
    return {"2 [tasks/PlayPlaylist.cpp] Playlist file may be cut: line " + QByteArray::number(line) +
                " has no line end (path=" + path + ')',
            FILE_ORIGIN};
}

inline LogLine Loaded(int tracks)
{
    return {"4 [tasks/PlayPlaylist.cpp] Playlist loaded (" + QByteArray::number(tracks) + " tracks)", TRACK_ORIGIN};
}

inline LogLine Empty()
{
    return {"4 [tasks/PlayPlaylist.cpp] Playlist is empty", TRACK_ORIGIN};
}

inline LogLine Failed()
{
    return {"1 [tasks/PlayPlaylist.cpp] TASK CREATION FAILED"};
}

// text: name, time, length and volume, as "xmas at 08:30:00 (92 s, vol=70)".
inline LogLine Created(const QByteArray& text)
{
    return {"4 [tasks/PlayPlaylist.cpp] TASK CREATED | PlayPlaylist: " + text};
}

} // namespace PlaylistLines

#pragma once

#include "PeerSignal.h"
#include "Request.h"

#include <array>

// The line of a schedule that asks for it every day at 08:30:00.
inline QByteArray Due(const Request& request)
{
    return "1111111|08:30:00|*|*|*|||" + request.Schedule().toUtf8() + '\n';
}

// What plays or works until a signal of its peer ends it.
struct PlayKind
{
    const char* name;       // of a row of a test
    const char* id;         // of its request
    const char* parameters; // with which it is tried
    const char* stop;       // id of the request that its deletion sends; null: none

    [[nodiscard]] Request Start() const { return Request::Find(id, parameters); }
    [[nodiscard]] Request Stop() const { return Request::Find(stop, parameters); }
    [[nodiscard]] QByteArray Peer() const { return Start().Peer().toLatin1(); }
    [[nodiscard]] QByteArray Method() const { return Start().Method().toLatin1(); }
    [[nodiscard]] PeerSignal End() const { return *FindSignal(Start()); }
};

inline constexpr std::array PLAY_KINDS{
    PlayKind{"message", "PlayFile", "gong.mp3", "StopPlay(file), deletion"},
    PlayKind{"playlist", "PlayPlaylist", "day,-1,morning", "StopPlay(playlist), deletion"},
    PlayKind{"stream", "PlayStream", "8554/live", "StopPlay(stream), deletion"},
    PlayKind{"photo", "TakePhoto", nullptr, nullptr},
    PlayKind{"series", "TakePhotoStream", "10,3", nullptr},
};

// Those with sound, and those with photos.
inline constexpr std::span PLAYBACKS = std::span(PLAY_KINDS).first<3>();
inline constexpr std::span PHOTO_WORK = std::span(PLAY_KINDS).last<2>();

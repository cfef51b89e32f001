#pragma once

#include "PeerReply.h"

#include <QString>
#include <QTime>
#include <QVariantList>

// The client of the sound manager, through the scheduler's shared proxy.
namespace SoundManager
{

inline constexpr const char* PLAY_AUX = "PlayAux";
inline constexpr const char* PLAY_FILE = "PlayFile";
inline constexpr const char* PLAY_PLAYLIST = "PlayPlaylist";
inline constexpr const char* PLAY_RADIO_FM = "PlayRadioFm";
inline constexpr const char* PLAY_STREAM = "PlayStream";
inline constexpr const char* RADIO_FM_SET_FREQUENCY = "RadioFmSetFrequency";
inline constexpr const char* SET_AMPLIFIERS = "SetAmplifiers";
inline constexpr const char* SET_MASTER_VOLUME = "SetMasterVolume";
inline constexpr const char* SET_PLAYER_VOLUME = "SetPlayerVolume";
inline constexpr const char* STOP_PLAY = "StopPlay";

// What can play and be stopped.
inline constexpr const char* SOURCE_AUX = "aux";
inline constexpr const char* SOURCE_FILE = "file";
inline constexpr const char* SOURCE_PLAYLIST = "playlist";
inline constexpr const char* SOURCE_RADIO_FM = "radiofm";
inline constexpr const char* SOURCE_STREAM = "stream";

// Calls method and waits for its status.
[[nodiscard]] PeerReply Call(const char* method, const QVariantList& arguments = {});

// Stops what plays on source; identifier: that of the playlist, empty for all other sources.
[[nodiscard]] PeerReply StopPlay(const char* source, const QString& identifier = {});

// How start times are written and travel: "hh:mm:ss", two digits each. Text of another form gives an invalid time,
// and an invalid time an empty text.
[[nodiscard]] QTime ParseTime(const QString& text);
[[nodiscard]] QString FormatTime(const QTime& time);

} // namespace SoundManager

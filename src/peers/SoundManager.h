#pragma once

#include "PeerReply.h"

#include <QString>
#include <QTime>

class PeerOwner;
class SoundSignals;

// The client of the sound manager. Each request waits for its answer, for TIMEOUT_MS where nothing else is said.
namespace SoundManager
{

inline constexpr const char* SERVICE = "com.kestrelix.ozna.soundmanager";
inline constexpr const char* PATH = "/com/kestrelix/ozna/soundmanager/soundobj";

inline constexpr int TIMEOUT_MS = 3000;
inline constexpr int PLAY_PLAYLIST_TIMEOUT_MS = 5000;
inline constexpr int PLAY_RADIO_FM_TIMEOUT_MS = 20000;

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

// The sound manager starts a file or a playlist itself at startTime; an invalid time means at once.
// firstTrack: counted from 1.
[[nodiscard]] PeerReply PlayFile(const QString& file, const QTime& startTime);
[[nodiscard]] PeerReply PlayPlaylist(const QString& name, const QString& identifier, int firstTrack,
                                     const QTime& startTime);
[[nodiscard]] PeerReply PlayStream(const QString& uri);
[[nodiscard]] PeerReply PlayAux();
[[nodiscard]] PeerReply PlayRadioFm();
[[nodiscard]] PeerReply SetRadioFmFrequency(double frequencyMHz);

// Stops what plays on source; identifier: that of the playlist, empty for all other sources.
[[nodiscard]] PeerReply StopPlay(const char* source, const QString& identifier = {});

[[nodiscard]] PeerReply SetMasterVolume(int volume);
[[nodiscard]] PeerReply SetPlayerVolume(const char* source, int volume);

// outputs: a bit for each that is to be on.
[[nodiscard]] PeerReply SetAmplifiers(unsigned char outputs);

// The sender of its signals; null before Peers has created the proxies.
[[nodiscard]] const SoundSignals* Signals();

// Who answers under its name; null where that is not known (see Peers).
[[nodiscard]] const PeerOwner* Owner();

// How start times are written and travel: "hh:mm:ss", two digits each. Text of another form gives an invalid time,
// and an invalid time an empty text.
[[nodiscard]] QTime ParseTime(const QString& text);
[[nodiscard]] QString FormatTime(const QTime& time);

} // namespace SoundManager

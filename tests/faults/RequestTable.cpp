#include "RequestTable.h"

#include <array>

namespace
{

constexpr int SOUND_MS = 3000;
constexpr int PLAYLIST_MS = 5000;
constexpr int RADIO_MS = 20000;
constexpr int PHOTO_MS = 5000;
constexpr int GPS_MS = 5000;
constexpr int FREQUENCY_MS = 2000;
constexpr int LIBRARY_MS = 25000;

constexpr const char* PLAY_FILE = "sound.PlayFile ss gong.mp3 08:30:00";
constexpr const char* PLAY_PLAYLIST = "sound.PlayPlaylist ssusb day morning 1 08:30:00 false";
constexpr const char* PLAY_STREAM = "sound.PlayStream su rtsp://10.0.0.5:8554/live 0";
constexpr const char* MESSAGE_ENDED = "4 [tasks/PlayMessage.cpp] TASK COMPLETED | PlayMessage: gong.mp3";
constexpr const char* PLAYLIST_ENDED = "4 [tasks/PlayPlaylist.cpp] TASK COMPLETED | PlayPlaylist: day";
constexpr const char* STREAM_ENDED = "4 [tasks/PlayStream.cpp] TASK COMPLETED | PlayStream: rtsp://10.0.0.5:8554/live";
constexpr const char* SERIES_ENDED = "4 [tasks/Photo.cpp] TASK COMPLETED | Photo: interval=10 s, num=2, ";
constexpr const char* SERIES_BEGUN = "4 [tasks/Photo.cpp] TASK REQUESTED | Photo: interval=10 s, num=2, ";
constexpr const char* MESSAGE_GONE = "2 [Task.cpp] TASK ENDED WITH ITS PEER | PlayMessage: gong.mp3";
constexpr const char* PLAYLIST_GONE = "2 [Task.cpp] TASK ENDED WITH ITS PEER | PlayPlaylist: day";
constexpr const char* STREAM_GONE = "2 [Task.cpp] TASK ENDED WITH ITS PEER | PlayStream: rtsp://10.0.0.5:8554/live";
constexpr const char* PHOTO_GONE = "2 [Task.cpp] TASK ENDED WITH ITS PEER | RecordPhoto: interval=0 s, num=1";
constexpr const char* SERIES_GONE = "2 [Task.cpp] TASK ENDED WITH ITS PEER | RecordPhoto: interval=10 s, num=2";
constexpr const char* ASKING = "4 [tasks/PlayPlaylist.cpp] Requesting PlayPlaylist...";

// clang-format off
constexpr std::array REQUESTS{
    Request{"play", "PlayFile", "PlayMessage|gong.mp3", "1 (PlayMessage)", Trigger::START, "sound", "PlayFile", SOUND_MS,
            "", PLAY_FILE, "",
            "1 [tasks/PlayMessage.cpp] PlayFile request error: %1",
            "1 [tasks/PlayMessage.cpp] PlayFile error: 7",
            "", Follow::NEVER, "", "", "", Wait::PLAYBACK, MESSAGE_ENDED, "no message", MESSAGE_GONE},
    Request{"play", "PlayPlaylist", "PlayPlaylist|day,-1,morning", "2 (PlayPlaylist)", Trigger::START, "sound",
            "PlayPlaylist", PLAYLIST_MS, "", PLAY_PLAYLIST, ASKING,
            "1 [tasks/PlayPlaylist.cpp] PlayPlaylist request error: %1",
            "1 [tasks/PlayPlaylist.cpp] PlayPlaylist error: 7",
            "4 [tasks/PlayPlaylist.cpp] TASK START@TIME REQUESTED | PlayPlaylist: day|1|08:30:00|-1",
            Follow::NEVER, "", "", "", Wait::PLAYBACK, PLAYLIST_ENDED, "no playlist", PLAYLIST_GONE},
    Request{"play", "PlayStream", "PlayStream|8554/live", "16 (PlayStream)", Trigger::START, "sound", "PlayStream",
            SOUND_MS, "", PLAY_STREAM, "",
            "1 [tasks/PlayStream.cpp] PlayStream request error: %1",
            "1 [tasks/PlayStream.cpp] PlayStream error: 7",
            "", Follow::NEVER, "", "", "", Wait::PLAYBACK, STREAM_ENDED, "no stream", STREAM_GONE},
    Request{"play", "SetPlayerVolume(file)", "PlayMessage|gong.mp3,70", "1 (PlayMessage)", Trigger::START, "sound",
            "SetPlayerVolume", SOUND_MS, "", "sound.SetPlayerVolume sd file 70", "", "", "", "",
            Follow::ALWAYS, PLAY_FILE, "", "1 [tasks/PlayMessage.cpp] PlayFile request error: %1",
            Wait::PLAYBACK, MESSAGE_ENDED, "the message at the volume before", MESSAGE_GONE},
    Request{"play", "SetPlayerVolume(playlist)", "PlayPlaylist|day,70,morning", "2 (PlayPlaylist)", Trigger::START,
            "sound", "SetPlayerVolume", SOUND_MS, "", "sound.SetPlayerVolume sd playlist 70", "", "", "", "",
            Follow::ALWAYS, PLAY_PLAYLIST,
            "4 [tasks/PlayPlaylist.cpp] Requesting PlayPlaylist...\n"
            "4 [tasks/PlayPlaylist.cpp] TASK START@TIME REQUESTED | PlayPlaylist: day|1|08:30:00|70",
            "4 [tasks/PlayPlaylist.cpp] Requesting PlayPlaylist...\n"
            "1 [tasks/PlayPlaylist.cpp] PlayPlaylist request error: %1",
            Wait::PLAYBACK, PLAYLIST_ENDED, "the playlist at the volume before", PLAYLIST_GONE},
    Request{"play", "SetPlayerVolume(stream)", "PlayStream|8554/live,70", "16 (PlayStream)", Trigger::START, "sound",
            "SetPlayerVolume", SOUND_MS, "", "sound.SetPlayerVolume sd stream 70", "", "", "", "",
            Follow::ALWAYS, PLAY_STREAM, "", "1 [tasks/PlayStream.cpp] PlayStream request error: %1",
            Wait::PLAYBACK, STREAM_ENDED, "the stream at the volume before", STREAM_GONE},

    Request{"slow", "PlayRadioFm", "PlayRadioFm|98.5", "6 (PlayRadioFm)", Trigger::START, "sound", "PlayRadioFm",
            RADIO_MS, "", "sound.PlayRadioFm -", "",
            "4 [tasks/PlayRadioFm.cpp] PlayRadioFm() request error: %1",
            "1 [tasks/PlayRadioFm.cpp] PlayRadioFm() error: 7",
            "", Follow::ACCEPTED, "sound.RadioFmSetFrequency d 98.5", "", "", Wait::NOTHING, "", "no radio"},
    Request{"set", "RadioFmSetFrequency", "PlayRadioFm|98.5", "6 (PlayRadioFm)", Trigger::START, "sound",
            "RadioFmSetFrequency", SOUND_MS, "sound.PlayRadioFm -", "sound.RadioFmSetFrequency d 98.5", "", "",
            "1 [tasks/PlayRadioFm.cpp] RadioFmSetFrequency(98.50) error: 7",
            "", Follow::NEVER, "", "", "", Wait::NOTHING, "", "the radio on the frequency before"},
    Request{"stop", "StopPlay(radiofm), PlayRadioFm 0", "PlayRadioFm|0", "6 (PlayRadioFm)", Trigger::START, "sound",
            "StopPlay", SOUND_MS, "", "sound.StopPlay ss radiofm ", "",
            "4 [tasks/PlayRadioFm.cpp] TASK REQUESTED | PlayRadioFm(radiofm): 0 (stop)",
            "4 [tasks/PlayRadioFm.cpp] StopPlay('radiofm') error: 7",
            "4 [tasks/PlayRadioFm.cpp] TASK REQUESTED | PlayRadioFm(radiofm): 0 (stop)",
            Follow::NEVER, "", "", "", Wait::NOTHING, "", "the radio goes on"},
    Request{"set", "PlayAux", "enableAux|1", "18 (EnableAux)", Trigger::START, "sound", "PlayAux", SOUND_MS,
            "", "sound.PlayAux -", "",
            "4 [tasks/EnableAux.cpp] TASK REQUESTED | EnableAux(1): 0",
            "4 [tasks/EnableAux.cpp] PlayAux() error: 7",
            "4 [tasks/EnableAux.cpp] TASK REQUESTED | EnableAux(1): 0",
            Follow::NEVER, "", "", "", Wait::NOTHING, "", "no auxiliary input"},
    Request{"stop", "StopPlay(aux)", "enableAux|0", "18 (EnableAux)", Trigger::START, "sound", "StopPlay", SOUND_MS,
            "", "sound.StopPlay ss aux ", "",
            "4 [tasks/EnableAux.cpp] TASK REQUESTED | EnableAux(0): 0 (stop)",
            "4 [tasks/EnableAux.cpp] StopPlay('aux') error: 7",
            "4 [tasks/EnableAux.cpp] TASK REQUESTED | EnableAux(0): 0 (stop)",
            Follow::NEVER, "", "", "", Wait::NOTHING, "", "the auxiliary input goes on"},
    Request{"stop", "StopPlay(file)", "StopMessage", "14 (StopMessage)", Trigger::START, "sound", "StopPlay", SOUND_MS,
            "", "sound.StopPlay ss file ", "",
            "1 [tasks/StopMessage.cpp] StopPlay(file) request error: %1",
            "1 [tasks/StopMessage.cpp] StopPlay(file) error: 7",
            "", Follow::NEVER, "", "", "", Wait::NOTHING, "", "the message goes on"},
    Request{"stop", "StopPlay(playlist)", "StopPlaylist|morning", "13 (StopPlaylist)", Trigger::START, "sound",
            "StopPlay", SOUND_MS, "", "sound.StopPlay ss playlist morning", "",
            "1 [tasks/StopPlaylist.cpp] StopPlay(playlist) request error: %1",
            "1 [tasks/StopPlaylist.cpp] StopPlay(playlist) error: 7",
            "", Follow::NEVER, "", "", "", Wait::NOTHING, "", "the playlist goes on"},
    Request{"stop", "StopPlay(stream)", "StopStream", "17 (Stoptream)", Trigger::START, "sound", "StopPlay", SOUND_MS,
            "", "sound.StopPlay ss stream ", "",
            "1 [tasks/StopStream.cpp] StopPlay(stream) request error: %1",
            "1 [tasks/StopStream.cpp] StopPlay(stream) error: 7",
            "", Follow::NEVER, "", "", "", Wait::NOTHING, "", "the stream goes on"},
    Request{"stop", "StopPlay(radiofm)", "StopRadioFm", "15 (StopRadioFm)", Trigger::START, "sound", "StopPlay",
            SOUND_MS, "", "sound.StopPlay ss radiofm ", "",
            "1 [tasks/StopRadioFm.cpp] StopPlay(radiofm) request error: %1",
            "1 [tasks/StopRadioFm.cpp] StopPlay(radiofm) error: 7",
            "", Follow::NEVER, "", "", "", Wait::NOTHING, "", "the radio goes on"},

    Request{"delete", "StopPlay(file), deletion", "PlayMessage|gong.mp3", "1 (PlayMessage)", Trigger::DELETION, "sound",
            "StopPlay", SOUND_MS, PLAY_FILE, "sound.StopPlay ss file ",
            "4 [tasks/PlayMessage.cpp] Scheduled Message gong.mp3 running: stop it",
            "2 [tasks/PlayMessage.cpp] Impossible to stop scheduled file",
            "2 [tasks/PlayMessage.cpp] Impossible to stop scheduled file",
            "", Follow::NEVER, "", "", "", Wait::NOTHING, "", "the message goes on", MESSAGE_GONE},
    Request{"delete", "StopPlay(playlist), deletion", "PlayPlaylist|day,-1,morning", "2 (PlayPlaylist)",
            Trigger::DELETION, "sound", "StopPlay", SOUND_MS, PLAY_PLAYLIST, "sound.StopPlay ss playlist morning",
            "4 [tasks/PlayPlaylist.cpp] Requesting PlayPlaylist...\n"
            "4 [tasks/PlayPlaylist.cpp] TASK START@TIME REQUESTED | PlayPlaylist: day|1|08:30:00|-1\n"
            "4 [tasks/PlayPlaylist.cpp] Scheduled Playlist day running: stop it "
            "(from /com/kestrelix/ozna/updatemanager/updateobj)",
            "2 [tasks/PlayPlaylist.cpp] Impossible to stop scheduled playlist",
            "2 [tasks/PlayPlaylist.cpp] Impossible to stop scheduled playlist",
            "", Follow::NEVER, "", "", "", Wait::NOTHING, "", "the playlist goes on", PLAYLIST_GONE},
    Request{"delete", "StopPlay(stream), deletion", "PlayStream|8554/live", "16 (PlayStream)", Trigger::DELETION,
            "sound", "StopPlay", SOUND_MS, PLAY_STREAM, "sound.StopPlay ss stream ",
            "4 [tasks/PlayStream.cpp] Scheduled Stream rtsp://10.0.0.5:8554/live running: stop it",
            "2 [tasks/PlayStream.cpp] Impossible to stop scheduled stream",
            "2 [tasks/PlayStream.cpp] Impossible to stop scheduled stream",
            "", Follow::NEVER, "", "", "", Wait::NOTHING, "", "the stream goes on", STREAM_GONE},

    Request{"set", "SetMasterVolume", "Volume|50", "5 (Volume)", Trigger::START, "sound", "SetMasterVolume", SOUND_MS,
            "", "sound.SetMasterVolume d 50", "",
            "1 [tasks/Volume.cpp] SetVolume(50) request error: %1",
            "1 [tasks/Volume.cpp] SetVolume(50) error: 7",
            "4 [tasks/Volume.cpp] TASK REQUESTED | Volume: 50",
            Follow::NEVER, "", "", "", Wait::NOTHING, "", "the volume before"},
    Request{"set", "SetAmplifiers", "Amplifiers|5", "8 (Amplifiers)", Trigger::START, "sound", "SetAmplifiers",
            SOUND_MS, "", "sound.SetAmplifiers y 5", "",
            "1 [tasks/Amplifiers.cpp] SetAmplifiers(0x05) request error: %1",
            "4 [tasks/Amplifiers.cpp] SetIntensity(5) error: 7",
            "", Follow::NEVER, "", "", "", Wait::NOTHING, "", "the outputs before"},
    Request{"slow", "SetIntensity", "Light|50", "0 (Light)", Trigger::START, "light", "SetIntensity", LIBRARY_MS,
            "", "light.SetIntensity u 50", "",
            "1 [tasks/Light.cpp] SetIntensity(50) request error",
            "1 [tasks/Light.cpp] SetIntensity(50) request error",
            "", Follow::ACCEPTED, "light.Switch b true", "4 [tasks/Light.cpp] TASK REQUESTED | Light: 1", "",
            Wait::NOTHING, "", "the light before"},
    Request{"slow", "Switch", "Light|0", "0 (Light)", Trigger::START, "light", "Switch", LIBRARY_MS,
            "", "light.Switch b false", "",
            "1 [tasks/Light.cpp] Switch(0) request error",
            "1 [tasks/Light.cpp] Switch(0) request error",
            "4 [tasks/Light.cpp] TASK REQUESTED | Light: 0",
            Follow::NEVER, "", "", "", Wait::NOTHING, "", "the light before"},
    Request{"set", "SetFreq", "SetCpuFreq|456", "9 (SetCpuFreq)", Trigger::START, "freq", "SetFreq", FREQUENCY_MS,
            "", "freq.SetFreq i 456", "",
            "1 [tasks/CpuFreq.cpp] SetFreq(456) request error: %1",
            "4 [tasks/CpuFreq.cpp] SetFreq(456) error: 7",
            "", Follow::NEVER, "", "", "", Wait::NOTHING, "", "the processor as before"},
    Request{"photo", "SetEnabled(GPS)", "Gps|1", "11 (Gps)", Trigger::START, "gps", "SetEnabled", GPS_MS,
            "", "gps.SetEnabled b true", "",
            "1 [tasks/Gps.cpp] SetEnabled(1) request error: %1",
            "1 [tasks/Gps.cpp] SetEnabled(1) error: 7",
            "", Follow::NEVER, "", "", "", Wait::NOTHING, "", "the GPS as before"},
    Request{"slow", "EnableLan", "Lan|1", "12 (Lan)", Trigger::START, "network", "EnableLan", LIBRARY_MS,
            "", "network.EnableLan bsss true   ", "",
            "1 [tasks/Lan.cpp] EnableLan(dhcp) request error: %1",
            "1 [tasks/Lan.cpp] EnableLan(1) error: 7",
            "", Follow::NEVER, "", "", "", Wait::NOTHING, "", "the LAN as before"},
    Request{"slow", "DisableLan", "Lan|0", "12 (Lan)", Trigger::START, "network", "DisableLan", LIBRARY_MS,
            "", "network.DisableLan -", "",
            "1 [tasks/Lan.cpp] DisableLan request error: %1",
            "1 [tasks/Lan.cpp] EnableLan(0) error: 7",
            "", Follow::NEVER, "", "", "", Wait::NOTHING, "", "the LAN as before"},

    Request{"photo", "EnableCamera", "Camera|1", "10 (Camera)", Trigger::START, "photo", "EnableCamera", PHOTO_MS,
            "", "photo.EnableCamera b true", "",
            "4 [tasks/Camera.cpp] EnableCamera(1) request error: %1",
            "1 [tasks/Camera.cpp] EnableCamera error: 7",
            "", Follow::NEVER, "", "", "", Wait::NOTHING, "", "the camera as before"},
    Request{"photo", "TakePhoto", "RecordPhoto", "4 (RecordPhoto)", Trigger::START, "photo", "TakePhoto", PHOTO_MS,
            "", "photo.TakePhoto -", "",
            "1 [tasks/Photo.cpp] TakePhoto() request error: %1",
            "1 [tasks/Photo.cpp] TakePhoto error: 7",
            "4 [tasks/Photo.cpp] TASK REQUESTED | Photo",
            Follow::NEVER, "", "", "", Wait::PHOTO, "", "no photo", PHOTO_GONE},
    Request{"photo", "TakePhotoStream", "RecordPhoto|10,2", "4 (RecordPhoto)", Trigger::START, "photo",
            "TakePhotoStream", PHOTO_MS, "", "photo.TakePhotoStream i 10", "",
            "4 [tasks/Photo.cpp] TakePhotoStream(10) request error: %1",
            "4 [tasks/Photo.cpp] TakePhotoStream(10) request error (7)",
            SERIES_BEGUN, Follow::NEVER, "", "", "", Wait::SERIES, SERIES_ENDED, "no photos", SERIES_GONE},
    Request{"photo", "StopPhotoStream", "RecordPhoto|10,2", "4 (RecordPhoto)", Trigger::PHOTO, "photo",
            "StopPhotoStream", PHOTO_MS, "photo.TakePhotoStream i 10", "photo.StopPhotoStream -", SERIES_BEGUN,
            "4 [tasks/Photo.cpp] StopPhotoStream request error: %1",
            "1 [tasks/Photo.cpp] StopPhotoStream error: 7",
            SERIES_ENDED, Follow::NEVER, "", "", "", Wait::NOTHING, SERIES_ENDED, "the series goes on", SERIES_GONE},
};
// clang-format on

} // namespace

std::span<const Request> AllRequests()
{
    return REQUESTS;
}

#include "RequestTable.h"

namespace
{

// What is played, its volume, and a playlist's identifier.
constexpr std::array MESSAGE{Example{"gong.mp3", {"gong.mp3", "-1"}}, Example{"gong.mp3,-7", {"gong.mp3", "-7"}}};
constexpr std::array LOUD_MESSAGE{Example{"gong.mp3,70", {"gong.mp3", "70"}}, Example{"gong.mp3,0", {"gong.mp3", "0"}}};
constexpr std::array PLAYLIST{Example{"day,-1,morning", {"day", "-1", "morning"}},
                              Example{"day,-5,morning", {"day", "-5", "morning"}},
                              Example{"day,loud,morning", {"day", "-1", "morning"}},
                              Example{"day,,morning", {"day", "-1", "morning"}},
                              Example{"day", {"day", "-1", ""}},
                              Example{"day,-1,a b", {"day", "-1", "a b"}},
                              Example{"day,-1,No\xc3\xabl", {"day", "-1", "No\xc3\xabl"}}};
constexpr std::array LOUD_PLAYLIST{
    Example{"day,70,morning", {"day", "70", "morning"}}, Example{"day,30,morning", {"day", "30", "morning"}},
    Example{"day,0,morning", {"day", "0", "morning"}}, Example{"day,+7,morning", {"day", "7", "morning"}}};
constexpr std::array STREAM{Example{"8554/live", {"8554/live", "-1"}}, Example{"8554/live,-5", {"8554/live", "-5"}},
                            Example{"8554/live,loud", {"8554/live", "-1"}}};
constexpr std::array LOUD_STREAM{Example{"8554/live,70", {"8554/live", "70"}},
                                 Example{"8554/live,40", {"8554/live", "40"}},
                                 Example{"8554/live,0", {"8554/live", "0"}}};
// As sent, and as shown.
constexpr std::array RADIO{Example{"98.5", {"98.5", "98.50"}},     Example{"108", {"108", "108.00"}},
                           Example{"87.504", {"87.504", "87.50"}}, Example{"0.001", {"0.001", "0.00"}},
                           Example{"-98.5", {"-98.5", "-98.50"}},  Example{"1e2", {"100", "100.00"}}};
constexpr std::array RADIO_OFF{Example{"0"}, Example{"0.00"}, Example{"-0.0"}, Example{"abc"}, Example{""}};
constexpr std::array ON{Example{"1"}};
constexpr std::array AUX_OFF{Example{"0"}, Example{"2"}, Example{"-1"}, Example{"word"}};
constexpr std::array NONE{Example{nullptr}};
constexpr std::array IDENTIFIERS{Example{"morning", {"morning"}}, Example{"day", {"day"}}, Example{"", {""}}};
constexpr std::array VOLUMES{Example{"50", {"50"}}, Example{"70", {"70"}}, Example{"-5", {"-5"}},
                             Example{"loud", {"0"}}, Example{"1000", {"1000"}}};
// The number, its low byte, which is sent, and the whole mask, which is shown.
constexpr std::array AMPLIFIERS{Example{"5", {"5", "5", "0x05"}},
                                Example{"300", {"300", "44", "0x12c"}},
                                Example{"0x0F", {"0", "0", "0x00"}},
                                Example{"255", {"255", "255", "0xff"}},
                                Example{"256", {"256", "0", "0x100"}},
                                Example{"-1", {"-1", "255", "0xffffffff"}},
                                Example{"-2147483648", {"-2147483648", "0", "0x80000000"}}};

// clang-format off
constexpr std::array REQUESTS{
    RequestRow{.group = "play", .id = "PlayFile", .kind = 1, .examples = MESSAGE,
               .call = "sound.PlayFile ss {1} 08:30:00", .timeout_ms = SOUND_TIMEOUT_MS,
               .failed = "1 [tasks/PlayMessage.cpp] PlayFile request error: {error}\n",
               .refused = "1 [tasks/PlayMessage.cpp] PlayFile error: {status}\n",
               .accepted = "9 [tasks/PlayMessage.cpp] TASK START@TIME REQUESTED | PlayMessage: {1}|08:30:00|{2}",
               .wait = Wait::PLAYBACK, .ended = "4 [tasks/PlayMessage.cpp] TASK COMPLETED | PlayMessage: {1}",
               .endedWithPeer = "2 [Task.cpp] TASK ENDED WITH ITS PEER | PlayMessage: {1}", .lost = "no message"},
    RequestRow{.group = "play", .id = "PlayPlaylist", .kind = 2, .examples = PLAYLIST,
               .call = "sound.PlayPlaylist ssusb {1} {3} 1 08:30:00 false", .timeout_ms = 5000,
               .before = "4 [tasks/PlayPlaylist.cpp] Requesting PlayPlaylist...",
               .failed = "1 [tasks/PlayPlaylist.cpp] PlayPlaylist request error: {error}",
               .refused = "1 [tasks/PlayPlaylist.cpp] PlayPlaylist error: {status}",
               .accepted = "4 [tasks/PlayPlaylist.cpp] TASK START@TIME REQUESTED | PlayPlaylist: {1}|1|08:30:00|{2}",
               .wait = Wait::PLAYBACK, .ended = "4 [tasks/PlayPlaylist.cpp] TASK COMPLETED | PlayPlaylist: {1}",
               .endedWithPeer = "2 [Task.cpp] TASK ENDED WITH ITS PEER | PlayPlaylist: {1}", .lost = "no playlist"},
    RequestRow{.group = "play", .id = "PlayStream", .kind = 16, .examples = STREAM,
               .call = "sound.PlayStream su rtsp://10.0.0.5:{1} 0", .timeout_ms = SOUND_TIMEOUT_MS,
               .before = "5 [tasks/PlayStream.cpp] PlayStream setup done: uri=rtsp://10.0.0.5:{1}",
               .failed = "1 [tasks/PlayStream.cpp] PlayStream request error: {error}\n",
               .refused = "1 [tasks/PlayStream.cpp] PlayStream error: {status}\n",
               .accepted = "9 [tasks/PlayStream.cpp] TASK START REQUESTED | PlayStream: rtsp://10.0.0.5:{1}|{2}",
               .wait = Wait::PLAYBACK,
               .ended = "4 [tasks/PlayStream.cpp] TASK COMPLETED | PlayStream: rtsp://10.0.0.5:{1}",
               .endedWithPeer = "2 [Task.cpp] TASK ENDED WITH ITS PEER | PlayStream: rtsp://10.0.0.5:{1}",
               .lost = "no stream"},
    RequestRow{.group = "play", .id = "SetPlayerVolume(file)", .kind = 1, .examples = LOUD_MESSAGE,
               .call = "sound.SetPlayerVolume sd file {2}", .timeout_ms = SOUND_TIMEOUT_MS,
               .judged = Judged::NEVER, .isDecisive = false, .second = "PlayFile", .follow = Follow::ALWAYS,
               .wait = Wait::PLAYBACK, .lost = "the message at the volume before"},
    RequestRow{.group = "play", .id = "SetPlayerVolume(playlist)", .kind = 2, .examples = LOUD_PLAYLIST,
               .call = "sound.SetPlayerVolume sd playlist {2}", .timeout_ms = SOUND_TIMEOUT_MS,
               .judged = Judged::NEVER, .isDecisive = false, .second = "PlayPlaylist", .follow = Follow::ALWAYS,
               .wait = Wait::PLAYBACK, .lost = "the playlist at the volume before"},
    RequestRow{.group = "play", .id = "SetPlayerVolume(stream)", .kind = 16, .examples = LOUD_STREAM,
               .call = "sound.SetPlayerVolume sd stream {2}", .timeout_ms = SOUND_TIMEOUT_MS,
               .judged = Judged::NEVER, .isDecisive = false, .second = "PlayStream", .follow = Follow::ALWAYS,
               .wait = Wait::PLAYBACK, .lost = "the stream at the volume before"},
    RequestRow{.group = "slow", .id = "PlayRadioFm", .kind = 6, .examples = RADIO,
               .call = "sound.PlayRadioFm -", .timeout_ms = 20000,
               .before = "9 [tasks/PlayRadioFm.cpp] Requesting SoundManager()->PlayRadioFm()",
               .failed = "4 [tasks/PlayRadioFm.cpp] PlayRadioFm() request error: {error}",
               .refused = "1 [tasks/PlayRadioFm.cpp] PlayRadioFm() error: {status}\n",
               .accepted = "9 [tasks/PlayRadioFm.cpp] TASK REQUESTED | PlayRadioFm: enable radio. Now set frequency...",
               .second = "RadioFmSetFrequency", .follow = Follow::ACCEPTED, .lost = "no radio"},
    RequestRow{.group = "set", .id = "RadioFmSetFrequency", .kind = 6, .examples = RADIO,
               .call = "sound.RadioFmSetFrequency d {1}", .timeout_ms = SOUND_TIMEOUT_MS,
               .judged = Judged::STATUS, .isDecisive = false,
               .before = "9 [tasks/PlayRadioFm.cpp] Requesting SoundManager()->RadioFmSetFrequency({2})",
               .refused = "1 [tasks/PlayRadioFm.cpp] RadioFmSetFrequency({2}) error: {status}\n",
               .accepted = "9 [tasks/PlayRadioFm.cpp] TASK REQUESTED | PlayRadioFm/SetFrequency: {2}",
               .first = "PlayRadioFm", .lost = "the radio on the frequency before"},
    RequestRow{.group = "stop", .id = "StopPlay(radiofm), PlayRadioFm 0", .kind = 6, .examples = RADIO_OFF,
               .call = "sound.StopPlay ss radiofm ", .timeout_ms = SOUND_TIMEOUT_MS,
               .judged = Judged::STATUS,
               .refused = "4 [tasks/PlayRadioFm.cpp] StopPlay('radiofm') error: {status}\n",
               .accepted = "4 [tasks/PlayRadioFm.cpp] TASK REQUESTED | PlayRadioFm(radiofm): 0 (stop)",
               .lost = "the radio goes on"},
    RequestRow{.group = "set", .id = "PlayAux", .kind = 18, .examples = ON,
               .call = "sound.PlayAux -", .timeout_ms = SOUND_TIMEOUT_MS,
               .judged = Judged::STATUS,
               .before = "9 [tasks/EnableAux.cpp] Requesting SoundManager()->PlayAux()",
               .refused = "4 [tasks/EnableAux.cpp] PlayAux() error: {status}\n",
               .accepted = "4 [tasks/EnableAux.cpp] TASK REQUESTED | EnableAux(1): 0",
               .lost = "no auxiliary input"},
    RequestRow{.group = "stop", .id = "StopPlay(aux)", .kind = 18, .examples = AUX_OFF,
               .call = "sound.StopPlay ss aux ", .timeout_ms = SOUND_TIMEOUT_MS,
               .judged = Judged::STATUS,
               .before = "9 [tasks/EnableAux.cpp] Requesting SoundManager()->StopPlay(aux)",
               .refused = "4 [tasks/EnableAux.cpp] StopPlay('aux') error: {status}\n",
               .accepted = "4 [tasks/EnableAux.cpp] TASK REQUESTED | EnableAux(0): 0 (stop)",
               .lost = "the auxiliary input goes on"},
    RequestRow{.group = "stop", .id = "StopPlay(file)", .kind = 14, .examples = NONE,
               .call = "sound.StopPlay ss file ", .timeout_ms = SOUND_TIMEOUT_MS,
               .failed = "1 [tasks/StopMessage.cpp] StopPlay(file) request error: {error}\n",
               .refused = "1 [tasks/StopMessage.cpp] StopPlay(file) error: {status}\n",
               .accepted = "9 [tasks/StopMessage.cpp] TASK REQUESTED | StopPlay(file)",
               .lost = "the message goes on"},
    RequestRow{.group = "stop", .id = "StopPlay(playlist)", .kind = 13, .examples = IDENTIFIERS,
               .call = "sound.StopPlay ss playlist {1}", .timeout_ms = SOUND_TIMEOUT_MS,
               .failed = "1 [tasks/StopPlaylist.cpp] StopPlay(playlist) request error: {error}\n",
               .refused = "1 [tasks/StopPlaylist.cpp] StopPlay(playlist) error: {status}\n",
               .accepted = "9 [tasks/StopPlaylist.cpp] TASK REQUESTED | StopPlay(playlist)",
               .lost = "the playlist goes on"},
    RequestRow{.group = "stop", .id = "StopPlay(stream)", .kind = 17, .examples = NONE,
               .call = "sound.StopPlay ss stream ", .timeout_ms = SOUND_TIMEOUT_MS,
               .failed = "1 [tasks/StopStream.cpp] StopPlay(stream) request error: {error}\n",
               .refused = "1 [tasks/StopStream.cpp] StopPlay(stream) error: {status}\n",
               .accepted = "9 [tasks/StopStream.cpp] TASK REQUESTED | StopPlay(stream)",
               .lost = "the stream goes on"},
    RequestRow{.group = "stop", .id = "StopPlay(radiofm)", .kind = 15, .examples = NONE,
               .call = "sound.StopPlay ss radiofm ", .timeout_ms = SOUND_TIMEOUT_MS,
               .failed = "1 [tasks/StopRadioFm.cpp] StopPlay(radiofm) request error: {error}\n",
               .refused = "1 [tasks/StopRadioFm.cpp] StopPlay(radiofm) error: {status}\n",
               .accepted = "9 [tasks/StopRadioFm.cpp] TASK REQUESTED | StopPlay(radiofm)",
               .lost = "the radio goes on"},
    RequestRow{.group = "delete", .id = "StopPlay(file), deletion", .kind = 1, .examples = MESSAGE,
               .trigger = Trigger::DELETION, .call = "sound.StopPlay ss file ", .timeout_ms = SOUND_TIMEOUT_MS,
               .before = "4 [tasks/PlayMessage.cpp] Scheduled Message {1} running: stop it",
               .failed = "2 [tasks/PlayMessage.cpp] Impossible to stop scheduled file",
               .refused = "2 [tasks/PlayMessage.cpp] Impossible to stop scheduled file",
               .first = "PlayFile", .lost = "the message goes on"},
    RequestRow{.group = "delete", .id = "StopPlay(playlist), deletion", .kind = 2, .examples = PLAYLIST,
               .trigger = Trigger::DELETION, .call = "sound.StopPlay ss playlist {3}", .timeout_ms = SOUND_TIMEOUT_MS,
               .before = "4 [tasks/PlayPlaylist.cpp] Scheduled Playlist {1} running: stop it "
                         "(from /com/kestrelix/ozna/updatemanager/updateobj)",
               .failed = "2 [tasks/PlayPlaylist.cpp] Impossible to stop scheduled playlist",
               .refused = "2 [tasks/PlayPlaylist.cpp] Impossible to stop scheduled playlist",
               .first = "PlayPlaylist", .lost = "the playlist goes on"},
    RequestRow{.group = "delete", .id = "StopPlay(stream), deletion", .kind = 16, .examples = STREAM,
               .trigger = Trigger::DELETION, .call = "sound.StopPlay ss stream ", .timeout_ms = SOUND_TIMEOUT_MS,
               .before = "4 [tasks/PlayStream.cpp] Scheduled Stream rtsp://10.0.0.5:{1} running: stop it",
               .failed = "2 [tasks/PlayStream.cpp] Impossible to stop scheduled stream",
               .refused = "2 [tasks/PlayStream.cpp] Impossible to stop scheduled stream",
               .first = "PlayStream", .lost = "the stream goes on"},
    RequestRow{.group = "set", .id = "SetMasterVolume", .kind = 5, .examples = VOLUMES,
               .call = "sound.SetMasterVolume d {1}", .timeout_ms = SOUND_TIMEOUT_MS,
               .failed = "1 [tasks/Volume.cpp] SetVolume({1}) request error: {error}\n",
               .refused = "1 [tasks/Volume.cpp] SetVolume({1}) error: {status}\n",
               .accepted = "4 [tasks/Volume.cpp] TASK REQUESTED | Volume: {1}",
               .lost = "the volume before"},
    RequestRow{.group = "set", .id = "SetAmplifiers", .kind = 8, .examples = AMPLIFIERS,
               .call = "sound.SetAmplifiers y {2}", .timeout_ms = SOUND_TIMEOUT_MS,
               .failed = "1 [tasks/Amplifiers.cpp] SetAmplifiers({3}) request error: {error}",
               .refused = "4 [tasks/Amplifiers.cpp] SetIntensity({1}) error: {status}\n",
               .accepted = "9 [tasks/Amplifiers.cpp] TASK REQUESTED | Amplifiers: {3}",
               .lost = "the outputs before"},
};
// clang-format on

} // namespace

std::span<const RequestRow> SoundRequests()
{
    return REQUESTS;
}

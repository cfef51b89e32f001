#include "KindTable.h"

#include <array>

namespace
{

constexpr std::array KINDS{
    KindRow{0, "Light", "Light", "Light", 1},
    KindRow{1, "PlayMessage", "PlayMessage", "PlayMessage", 1},
    KindRow{2, "PlayPlaylist", "PlayPlaylist", "PlayPlaylist", 1},
    KindRow{3, "RecordMic", "RecordMic", "", 0},
    KindRow{4, "RecordPhoto", "RecordPhoto", "Photo", 0},
    KindRow{5, "Volume", "Volume", "Volume", 1, -1, "set the master volume to 1"},
    KindRow{6, "PlayRadioFm", "PlayRadioFm", "PlayRadioFm", 1},
    KindRow{7, "RecordVideo", "RecordVideo", "", 0},
    KindRow{8, "Amplifiers", "Amplifiers", "Amplifiers", 1, -1,
            "switch the amplifier outputs of mask 1 on and all others off"},
    KindRow{9, "SetCpuFreq", "SetCpuFreq", "CpuFreq", 1},
    KindRow{10, "Camera", "Camera", "Camera", 1, -1, "switch the camera on"},
    KindRow{11, "Gps", "Gps", "Gps", 1, -1, "switch the GPS receiver on"},
    KindRow{12, "Lan", "Lan", "Lan", 1, -1, "switch the LAN on, with DHCP"},
    KindRow{13, "StopPlaylist", "StopPlaylist", "StopPlaylist", 0},
    KindRow{14, "StopMessage", "StopMessage", "StopMessage", 0},
    KindRow{15, "StopRadioFm", "StopRadioFm", "StopRadioFm", 0},
    KindRow{16, "PlayStream", "PlayStream", "PlayStream", 1},
    KindRow{17, "StopStream", "Stoptream", "StopStream", 0},
    KindRow{18, "enableAux", "EnableAux", "EnableAux", 1, 1},
    KindRow{19, "", "RequestPddAction", "RequestPddAction", 2, 2},
};

const QByteArrayList NO_NUMBERS{"",           "abc",         "on",         "0x0F",
                                "1.0",        "1e1",         "5 6",        "70%",
                                "2147483648", "-2147483649", "4294967297", "99999999999999999999",
                                "%s%n",       "caff\xc3\xa8"};
const ParameterTexts NUMBERS{{{"0", "0"},
                              {"1", "1"},
                              {"300", "300"},
                              {"-5", "-5"},
                              {"-1", "-1"},
                              {"+7", "7"},
                              {"007", "7"},
                              {"2147483647", "2147483647"},
                              {"-2147483648", "-2147483648"}},
                             NO_NUMBERS};
// Only the number 1 means on.
const ParameterTexts SWITCHES{{{"1", "1"},
                               {"+1", "1"},
                               {"01", "1"},
                               {"0", "0"},
                               {"2", "0"},
                               {"-1", "0"},
                               {"10", "0"},
                               {"257", "0"},
                               {"2147483647", "0"}},
                              NO_NUMBERS + QByteArrayList{"true", "yes", "0x1", "1 1"}};
const ParameterTexts ACTIONS{{{"1", "STREAM_MIC"}, {"01", "STREAM_MIC"}},
                             NO_NUMBERS + QByteArrayList{"2", "0", "-1", "11", "STREAM_MIC", "0x1"}};
const ParameterTexts FREQUENCIES{{{"98.5", "98.50"},
                                  {"1", "1.00"},
                                  {"0", "0.00"},
                                  {"0.00", "0.00"},
                                  {"-0.0", "-0.00"},
                                  {"87.504", "87.50"},
                                  {"87.506", "87.51"},
                                  {"0.001", "0.00"},
                                  {"-98.5", "-98.50"},
                                  {"1e2", "100.00"},
                                  {".5", "0.50"},
                                  {"108", "108.00"}},
                                 {"", "abc", "98.5 MHz", "98.5.1", "0x62", "1e400", "%f"}};
// There is one speed, and the warning comes for every parameter.
const ParameterTexts SPEEDS{{}, {"", "1", "600", "456", "0", "-1", "abc"}};

constexpr const char* NO_VOLUME = "Invalid volume={1}, not used";

const QList<Reading> READINGS{
    {"Light|{1},", "Light: {1}", "Can't parse Light intensity from parameters: '{1}'. Using 0.", "0", &NUMBERS},
    {"PlayMessage|gong.mp3,{1},", "PlayMessage: gong.mp3 @ 08:30:00 (vol={1})", NO_VOLUME, "-1", &NUMBERS},
    {"PlayPlaylist|xmas,{1},", "PlayPlaylist: xmas at 08:30:00 (92 s, vol={1})", NO_VOLUME, "-1", &NUMBERS},
    {"RecordPhoto|{1},3", "Photo: interval={1} s, numPhoto=3",
     "Can't parse Photo interval from parameters: '{1},3'. Using 0.", "0", &NUMBERS},
    {"RecordPhoto|10,{1}", "Photo: interval=10 s, numPhoto={1}",
     "Can't parse Photo number from parameters: '10,{1}'. Using 1.", "1", &NUMBERS},
    {"Volume|{1},", "Volume: {1}", "Can't parse Volume value from parameters: '{1}'. Using 0.", "0", &NUMBERS},
    {"PlayRadioFm|{1},", "PlayRadioFm: {1}", "Can't parse RadioFm frequency from parameters: '{1}'. Using 0.", "0.00",
     &FREQUENCIES},
    {"Amplifiers|{1},", "Amplifiers: {1}", "Can't parse Amplifiers mask from parameters: '{1}'. Using 0.", "0",
     &NUMBERS},
    {"SetCpuFreq|{1},", "CpuFreq: {1}", "Can't parse Cpu frequency from parameters: '{1}'. Using 456.", "456", &SPEEDS},
    {"Camera|{1},", "Camera: {1}", "", "0", &SWITCHES},
    {"Gps|{1},", "Gps: {1}", "Can't parse Gps enabled/disabled from parameters: '{1}'. Using false.", "0", &SWITCHES},
    {"Lan|{1},", "Lan: {1}", "Can't parse Lan enabled/disabled from parameters: '{1}'. Using false.", "0", &SWITCHES},
    {"PlayStream|8554/live,{1},", "PlayStream: portAndPath=8554/live (vol={1})", NO_VOLUME, "-1", &NUMBERS},
    {"enableAux|{1},", "EnableAux({1})", "Can't parse EnableAux enable from parameters: '{1}'. Using enable=FALSE.",
     "0", &SWITCHES},
    {"19|{1},1", "RequestPddAction({1}, 1)",
     "Can't parse RequestPddAction action from parameters: '{1}'. Using action=NONE.", "UNKNOWN", &ACTIONS},
    {"19|1,{1},", "RequestPddAction(STREAM_MIC, {1})",
     "Can't parse RequestPddAction enable from parameters: '{1}'. Using enable=FALSE.", "0", &SWITCHES},
};

} // namespace

std::span<const KindRow> AllKinds()
{
    return KINDS;
}

const KindRow& FindKind(int number)
{
    return KINDS.at(static_cast<std::size_t>(number));
}

const QList<Reading>& AllReadings()
{
    return READINGS;
}

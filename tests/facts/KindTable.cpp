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
    KindRow{5, "Volume", "Volume", "Volume", 1},
    KindRow{6, "PlayRadioFm", "PlayRadioFm", "PlayRadioFm", 1},
    KindRow{7, "RecordVideo", "RecordVideo", "", 0},
    KindRow{8, "Amplifiers", "Amplifiers", "Amplifiers", 1},
    KindRow{9, "SetCpuFreq", "SetCpuFreq", "CpuFreq", 1},
    KindRow{10, "Camera", "Camera", "Camera", 1},
    KindRow{11, "Gps", "Gps", "Gps", 1},
    KindRow{12, "Lan", "Lan", "Lan", 1},
    KindRow{13, "StopPlaylist", "StopPlaylist", "StopPlaylist", 0},
    KindRow{14, "StopMessage", "StopMessage", "StopMessage", 0},
    KindRow{15, "StopRadioFm", "StopRadioFm", "StopRadioFm", 0},
    KindRow{16, "PlayStream", "PlayStream", "PlayStream", 1},
    KindRow{17, "StopStream", "Stoptream", "StopStream", 0},
    KindRow{18, "enableAux", "EnableAux", "EnableAux", 1, 1},
    KindRow{19, "", "RequestPddAction", "RequestPddAction", 2, 2},
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

#include "RequestTable.h"

namespace
{

constexpr int PHOTO_TIMEOUT_MS = 5000;

constexpr const char* SERIES_ENDED = "4 [tasks/Photo.cpp] TASK COMPLETED | Photo: interval={1} s, num={2}, ";

constexpr std::array ON{Example{"1"}};
// The number, as it goes out with its bits as they are, and what the switch is set to.
constexpr std::array INTENSITIES{Example{"50", {"50", "50", "true", "1"}}, Example{"1", {"1", "1", "true", "1"}},
                                 Example{"2147483647", {"2147483647", "2147483647", "true", "1"}},
                                 Example{"-1", {"-1", "4294967295", "true", "1"}},
                                 Example{"-2147483648", {"-2147483648", "2147483648", "true", "1"}}};
constexpr std::array DARK{Example{"0", {"0", "", "false", "0"}}, Example{"bright", {"0", "", "false", "0"}}};
constexpr std::array FREQUENCIES{Example{"456"}, Example{"600"}, Example{"1"}, Example{""}};
constexpr std::array SWITCHES{Example{"1", {"true", "1"}}, Example{"0", {"false", "0"}}, Example{"2", {"false", "0"}}};
constexpr std::array LAN_OFF{Example{"0"}, Example{"2"}};
constexpr std::array CAMERA{Example{"1", {"true", "1", "Enabling"}}, Example{"0", {"false", "0", "Disabling"}},
                            Example{"2", {"false", "0", "Disabling"}}, Example{"abc", {"false", "0", "Disabling"}}};
constexpr std::array ONE_PHOTO{Example{nullptr, {"0", "1"}}, Example{"10,1", {"10", "1"}}, Example{"10", {"10", "1"}},
                               Example{"10,x", {"10", "1"}}};
constexpr std::array SERIES{Example{"10,2", {"10", "2"}},
                            Example{"10,3", {"10", "3"}},
                            Example{"x,3", {"0", "3"}},
                            Example{"10,0", {"10", "0"}},
                            Example{"10,-1", {"10", "-1"}},
                            Example{"-10,2", {"-10", "2"}},
                            Example{"2147483647,2", {"2147483647", "2"}}};

// clang-format off
constexpr std::array REQUESTS{
    RequestRow{.group = "slow", .id = "SetIntensity", .kind = 0, .examples = INTENSITIES,
               .call = "light.SetIntensity u {2}", .timeout_ms = LIBRARY_TIMEOUT_MS,
               .failed = "1 [tasks/Light.cpp] SetIntensity({1}) request error",
               .refused = "1 [tasks/Light.cpp] SetIntensity({1}) request error",
               .second = "Switch", .follow = Follow::ACCEPTED, .lost = "the light before"},
    RequestRow{.group = "slow", .id = "Switch", .kind = 0, .examples = DARK,
               .call = "light.Switch b {3}", .timeout_ms = LIBRARY_TIMEOUT_MS,
               .failed = "1 [tasks/Light.cpp] Switch({4}) request error",
               .refused = "1 [tasks/Light.cpp] Switch({4}) request error",
               .accepted = "4 [tasks/Light.cpp] TASK REQUESTED | Light: {4}",
               .lost = "the light before"},
    RequestRow{.group = "set", .id = "SetFreq", .kind = 9, .examples = FREQUENCIES,
               .call = "freq.SetFreq i 456", .timeout_ms = 2000,
               .failed = "1 [tasks/CpuFreq.cpp] SetFreq(456) request error: {error}",
               .refused = "4 [tasks/CpuFreq.cpp] SetFreq(456) error: {status}\n",
               .accepted = "9 [tasks/CpuFreq.cpp] TASK EXECUTED | CpuFreq: 456",
               .lost = "the processor as before"},
    RequestRow{.group = "photo", .id = "SetEnabled(GPS)", .kind = 11, .examples = SWITCHES,
               .call = "gps.SetEnabled b {1}", .timeout_ms = 5000,
               .failed = "1 [tasks/Gps.cpp] SetEnabled({2}) request error: {error}\n",
               .refused = "1 [tasks/Gps.cpp] SetEnabled({2}) error: {status}\n",
               .accepted = "9 [tasks/Gps.cpp] TASK REQUESTED | Gps: {2}",
               .lost = "the GPS as before"},
    RequestRow{.group = "slow", .id = "EnableLan", .kind = 12, .examples = ON,
               .call = "network.EnableLan bsss true   ", .timeout_ms = LIBRARY_TIMEOUT_MS,
               .failed = "1 [tasks/Lan.cpp] EnableLan(dhcp) request error: {error}\n",
               .refused = "1 [tasks/Lan.cpp] EnableLan(1) error: {status}\n",
               .accepted = "9 [tasks/Lan.cpp] TASK REQUESTED | Lan: 1",
               .lost = "the LAN as before"},
    RequestRow{.group = "slow", .id = "DisableLan", .kind = 12, .examples = LAN_OFF,
               .call = "network.DisableLan -", .timeout_ms = LIBRARY_TIMEOUT_MS,
               .failed = "1 [tasks/Lan.cpp] DisableLan request error: {error}\n",
               .refused = "1 [tasks/Lan.cpp] EnableLan(0) error: {status}\n",
               .accepted = "9 [tasks/Lan.cpp] TASK REQUESTED | Lan: 0",
               .lost = "the LAN as before"},
    RequestRow{.group = "photo", .id = "EnableCamera", .kind = 10, .examples = CAMERA,
               .call = "photo.EnableCamera b {1}", .timeout_ms = PHOTO_TIMEOUT_MS,
               .before = "9 [tasks/Camera.cpp] {3}",
               .failed = "4 [tasks/Camera.cpp] EnableCamera({2}) request error: {error}\n",
               .refused = "1 [tasks/Camera.cpp] EnableCamera error: {status}\n",
               .accepted = "9 [tasks/Camera.cpp] TASK REQUESTED | EnableCamera:{2}",
               .lost = "the camera as before"},
    RequestRow{.group = "photo", .id = "TakePhoto", .kind = 4, .examples = ONE_PHOTO,
               .call = "photo.TakePhoto -", .timeout_ms = PHOTO_TIMEOUT_MS,
               .before = "9 [tasks/Photo.cpp] Taking single photo",
               .failed = "1 [tasks/Photo.cpp] TakePhoto() request error: {error}\n",
               .refused = "1 [tasks/Photo.cpp] TakePhoto error: {status}\n",
               .accepted = "4 [tasks/Photo.cpp] TASK REQUESTED | Photo",
               .wait = Wait::PHOTO,
               .endedWithPeer = "2 [Task.cpp] TASK ENDED WITH ITS PEER | RecordPhoto: interval={1} s, num={2}",
               .lost = "no photo"},
    RequestRow{.group = "photo", .id = "TakePhotoStream", .kind = 4, .examples = SERIES,
               .call = "photo.TakePhotoStream i {1}", .timeout_ms = PHOTO_TIMEOUT_MS,
               .before = "9 [tasks/Photo.cpp] Taking multiple photo",
               .failed = "4 [tasks/Photo.cpp] TakePhotoStream({1}) request error: {error}\n",
               .refused = "4 [tasks/Photo.cpp] TakePhotoStream({1}) request error ({status})",
               .accepted = "4 [tasks/Photo.cpp] TASK REQUESTED | Photo: interval={1} s, num={2}, ",
               .wait = Wait::SERIES, .ended = SERIES_ENDED,
               .endedWithPeer = "2 [Task.cpp] TASK ENDED WITH ITS PEER | RecordPhoto: interval={1} s, num={2}",
               .lost = "no photos"},
    RequestRow{.group = "photo", .id = "StopPhotoStream", .kind = 4, .examples = SERIES,
               .trigger = Trigger::PHOTO, .call = "photo.StopPhotoStream -", .timeout_ms = PHOTO_TIMEOUT_MS,
               .isDecisive = false,
               .failed = "4 [tasks/Photo.cpp] StopPhotoStream request error: {error}\n",
               .refused = "1 [tasks/Photo.cpp] StopPhotoStream error: {status}\n",
               .accepted = SERIES_ENDED,
               .first = "TakePhotoStream", .lost = "the series goes on"},
};
// clang-format on

} // namespace

std::span<const RequestRow> DeviceRequests()
{
    return REQUESTS;
}

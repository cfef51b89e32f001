#pragma once

#include <QString>

#include <array>
#include <cstdint>

// The kinds of task. The numbers are part of the schedule format: a line may give its task by number.
enum TaskType : std::int32_t
{
    TASK_LIGHT = 0,
    TASK_PLAY_MESSAGE = 1,
    TASK_PLAY_PLAYLIST = 2,
    TASK_RECORD_MIC = 3,
    TASK_RECORD_PHOTO = 4,
    TASK_VOLUME = 5,
    TASK_PLAY_RADIO_FM = 6,
    TASK_RECORD_VIDEO = 7,
    TASK_AMPLIFIERS = 8,
    TASK_SET_CPU_FREQ = 9,
    TASK_CAMERA = 10,
    TASK_GPS = 11,
    TASK_LAN = 12,
    TASK_STOP_PLAYLIST = 13,
    TASK_STOP_MESSAGE = 14,
    TASK_STOP_RADIO_FM = 15,
    TASK_PLAY_STREAM = 16,
    TASK_STOP_STREAM = 17,
    TASK_ENABLE_AUX = 18,
    TASK_REQUEST_PDD_ACTION = 19,
    TASK_UNKNOWN = 99,
};

// How a kind of task is called.
struct TaskName
{
    TaskType type;
    const char* scheduleName; // null: a line asks for it by number only
    const char* logName;
};

// All kinds, each at the place of its type.
inline constexpr std::array TASK_NAMES{
    TaskName{TASK_LIGHT, "Light", "Light"},
    TaskName{TASK_PLAY_MESSAGE, "PlayMessage", "PlayMessage"},
    TaskName{TASK_PLAY_PLAYLIST, "PlayPlaylist", "PlayPlaylist"},
    TaskName{TASK_RECORD_MIC, "RecordMic", "RecordMic"},
    TaskName{TASK_RECORD_PHOTO, "RecordPhoto", "RecordPhoto"},
    TaskName{TASK_VOLUME, "Volume", "Volume"},
    TaskName{TASK_PLAY_RADIO_FM, "PlayRadioFm", "PlayRadioFm"},
    TaskName{TASK_RECORD_VIDEO, "RecordVideo", "RecordVideo"},
    TaskName{TASK_AMPLIFIERS, "Amplifiers", "Amplifiers"},
    TaskName{TASK_SET_CPU_FREQ, "SetCpuFreq", "SetCpuFreq"},
    TaskName{TASK_CAMERA, "Camera", "Camera"},
    TaskName{TASK_GPS, "Gps", "Gps"},
    TaskName{TASK_LAN, "Lan", "Lan"},
    TaskName{TASK_STOP_PLAYLIST, "StopPlaylist", "StopPlaylist"},
    TaskName{TASK_STOP_MESSAGE, "StopMessage", "StopMessage"},
    TaskName{TASK_STOP_RADIO_FM, "StopRadioFm", "StopRadioFm"},
    TaskName{TASK_PLAY_STREAM, "PlayStream", "PlayStream"},
    // The two spellings of the next kinds differ, because log readers and schedules know them so.
    TaskName{TASK_STOP_STREAM, "StopStream", "Stoptream"},
    TaskName{TASK_ENABLE_AUX, "enableAux", "EnableAux"},
    TaskName{TASK_REQUEST_PDD_ACTION, nullptr, "RequestPddAction"},
};

// Whether there is such a kind; the type may be any number.
[[nodiscard]] bool IsTaskKind(TaskType type);

// The kind whose schedule name equals name to the letter; TASK_UNKNOWN where there is none.
[[nodiscard]] TaskType TypeOfScheduleName(const QString& name);

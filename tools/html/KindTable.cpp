#include "KindTable.h"

#include <algorithm>
#include <array>

namespace
{

constexpr KindLook OTHER{TASK_UNKNOWN, "Other", "setting", false};

constexpr std::array LOOKS{
    KindLook{TASK_LIGHT, "Light", "setting", false},
    KindLook{TASK_PLAY_MESSAGE, "Message", "message", true},
    KindLook{TASK_PLAY_PLAYLIST, "Playlist", "playlist", true},
    KindLook{TASK_RECORD_PHOTO, "Photo", "setting", false},
    KindLook{TASK_VOLUME, "Volume", "setting", false},
    KindLook{TASK_PLAY_RADIO_FM, "Radio", "radio", true},
    KindLook{TASK_AMPLIFIERS, "Outputs", "setting", false},
    KindLook{TASK_SET_CPU_FREQ, "Processor", "setting", false},
    KindLook{TASK_CAMERA, "Camera", "setting", false},
    KindLook{TASK_GPS, "GPS", "setting", false},
    KindLook{TASK_LAN, "Network", "setting", false},
    KindLook{TASK_STOP_PLAYLIST, "Stop playlist", "playlist", false},
    KindLook{TASK_STOP_MESSAGE, "Stop message", "message", false},
    KindLook{TASK_STOP_RADIO_FM, "Stop radio", "radio", false},
    KindLook{TASK_PLAY_STREAM, "Stream", "stream", true},
    KindLook{TASK_STOP_STREAM, "Stop stream", "stream", false},
    KindLook{TASK_ENABLE_AUX, "Aux input", "aux", false},
    KindLook{TASK_REQUEST_PDD_ACTION, "PDD action", "setting", false},
};

} // namespace

const KindLook& KindTable::Find(TaskType type)
{
    const auto* const look = std::ranges::find_if(LOOKS, [type](const KindLook& row) { return row.type == type; });
    return look != LOOKS.end() ? *look : OTHER;
}

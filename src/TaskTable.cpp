#include "TaskTable.h"

#include "tasks/Amplifiers.h"
#include "tasks/Camera.h"
#include "tasks/CpuFreq.h"
#include "tasks/EnableAux.h"
#include "tasks/Gps.h"
#include "tasks/Lan.h"
#include "tasks/Light.h"
#include "tasks/Photo.h"
#include "tasks/PlayMessage.h"
#include "tasks/PlayPlaylist.h"
#include "tasks/PlayRadioFm.h"
#include "tasks/PlayStream.h"
#include "tasks/RequestPddAction.h"
#include "tasks/StopMessage.h"
#include "tasks/StopPlaylist.h"
#include "tasks/StopRadioFm.h"
#include "tasks/StopStream.h"
#include "tasks/Volume.h"

#include <algorithm>
#include <array>
#include <limits>

namespace
{

constexpr int NO_LIMIT = std::numeric_limits<int>::max();

// Tells a task to leave the volume as it is.
const QString NO_VOLUME = QStringLiteral("-1");

// Makes a task that takes no parameters.
template <typename Kind> std::unique_ptr<Task> Make(const TaskRequest&)
{
    return std::make_unique<Kind>();
}

// Makes a task from its first parameter, or from the empty text where the kind takes none as well.
template <typename Kind> std::unique_ptr<Task> MakeFromFirst(const TaskRequest& request)
{
    return std::make_unique<Kind>(request.parameters.value(0));
}

std::unique_ptr<Task> MakePhoto(const TaskRequest& request)
{
    return std::make_unique<Photo>(request.parameterText);
}

std::unique_ptr<Task> MakePlayPlaylist(const TaskRequest& request)
{
    return std::make_unique<PlayPlaylist>(request.startTime, request.parameters[0],
                                          request.parameters.value(1, NO_VOLUME), request.parameters.value(2));
}

std::unique_ptr<Task> MakePlayStream(const TaskRequest& request)
{
    return std::make_unique<PlayStream>(request.parameters[0], request.parameters.value(1, NO_VOLUME));
}

std::unique_ptr<Task> MakeRequestPddAction(const TaskRequest& request)
{
    return std::make_unique<RequestPddAction>(request.parameters[0], request.parameters[1]);
}

std::unique_ptr<Task> MakePlayMessage(const TaskRequest& request)
{
    return std::make_unique<PlayMessage>(request.startTime, request.parameters[0],
                                         request.parameters.value(1, NO_VOLUME));
}

constexpr std::array TABLE{
    TaskKind{TASK_LIGHT, "Light", "Light", 1, NO_LIMIT, MakeFromFirst<Light>},
    TaskKind{TASK_PLAY_MESSAGE, "PlayMessage", "PlayMessage", 1, NO_LIMIT, MakePlayMessage},
    TaskKind{TASK_PLAY_PLAYLIST, "PlayPlaylist", "PlayPlaylist", 1, NO_LIMIT, MakePlayPlaylist},
    TaskKind{TASK_RECORD_MIC, "RecordMic", "RecordMic", 0, NO_LIMIT, nullptr},
    TaskKind{TASK_RECORD_PHOTO, "RecordPhoto", "RecordPhoto", 0, NO_LIMIT, MakePhoto},
    TaskKind{TASK_VOLUME, "Volume", "Volume", 1, NO_LIMIT, MakeFromFirst<Volume>},
    TaskKind{TASK_PLAY_RADIO_FM, "PlayRadioFm", "PlayRadioFm", 1, NO_LIMIT, MakeFromFirst<PlayRadioFm>},
    TaskKind{TASK_RECORD_VIDEO, "RecordVideo", "RecordVideo", 0, NO_LIMIT, nullptr},
    TaskKind{TASK_AMPLIFIERS, "Amplifiers", "Amplifiers", 1, NO_LIMIT, MakeFromFirst<Amplifiers>},
    TaskKind{TASK_SET_CPU_FREQ, "SetCpuFreq", "SetCpuFreq", 1, NO_LIMIT, MakeFromFirst<CpuFreq>},
    TaskKind{TASK_CAMERA, "Camera", "Camera", 1, NO_LIMIT, MakeFromFirst<Camera>},
    TaskKind{TASK_GPS, "Gps", "Gps", 1, NO_LIMIT, MakeFromFirst<Gps>},
    TaskKind{TASK_LAN, "Lan", "Lan", 1, NO_LIMIT, MakeFromFirst<Lan>},
    TaskKind{TASK_STOP_PLAYLIST, "StopPlaylist", "StopPlaylist", 0, NO_LIMIT, MakeFromFirst<StopPlaylist>},
    TaskKind{TASK_STOP_MESSAGE, "StopMessage", "StopMessage", 0, NO_LIMIT, Make<StopMessage>},
    TaskKind{TASK_STOP_RADIO_FM, "StopRadioFm", "StopRadioFm", 0, NO_LIMIT, Make<StopRadioFm>},
    TaskKind{TASK_PLAY_STREAM, "PlayStream", "PlayStream", 1, NO_LIMIT, MakePlayStream},
    // The two spellings of the next kinds differ, by requirement.
    TaskKind{TASK_STOP_STREAM, "StopStream", "Stoptream", 0, NO_LIMIT, Make<StopStream>},
    TaskKind{TASK_ENABLE_AUX, "enableAux", "EnableAux", 1, 1, MakeFromFirst<EnableAux>},
    TaskKind{TASK_REQUEST_PDD_ACTION, nullptr, "RequestPddAction", 2, 2, MakeRequestPddAction},
};

constexpr bool IsIndexedByType()
{
    for (size_t i = 0; i < TABLE.size(); ++i)
    {
        if (TABLE[i].type != static_cast<TaskType>(i))
            return false;
    }
    return true;
}

static_assert(IsIndexedByType(), "a row stands at the place of its type");
static_assert(TABLE.size() == TaskTable::SIZE, "the header tells how many rows there are");

} // namespace

const TaskKind* TaskTable::Find(TaskType type)
{
    return type >= 0 && static_cast<size_t>(type) < TABLE.size() ? &TABLE[static_cast<size_t>(type)] : nullptr;
}

const TaskKind* TaskTable::FindByName(const QString& name)
{
    const auto* row = std::ranges::find_if(TABLE, [&name](const TaskKind& kind) {
        return kind.scheduleName != nullptr && name == QLatin1String(kind.scheduleName);
    });
    return row != TABLE.end() ? row : nullptr;
}

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

// A kind with its names.
constexpr TaskKind Kind(TaskType type, int minParameters, int maxParameters, TaskKind::Creator create)
{
    return {TASK_NAMES[static_cast<size_t>(type)], minParameters, maxParameters, create};
}

constexpr std::array TABLE{
    Kind(TASK_LIGHT, 1, NO_LIMIT, MakeFromFirst<Light>),
    Kind(TASK_PLAY_MESSAGE, 1, NO_LIMIT, MakePlayMessage),
    Kind(TASK_PLAY_PLAYLIST, 1, NO_LIMIT, MakePlayPlaylist),
    Kind(TASK_RECORD_MIC, 0, NO_LIMIT, nullptr),
    Kind(TASK_RECORD_PHOTO, 0, NO_LIMIT, MakePhoto),
    Kind(TASK_VOLUME, 1, NO_LIMIT, MakeFromFirst<Volume>),
    Kind(TASK_PLAY_RADIO_FM, 1, NO_LIMIT, MakeFromFirst<PlayRadioFm>),
    Kind(TASK_RECORD_VIDEO, 0, NO_LIMIT, nullptr),
    Kind(TASK_AMPLIFIERS, 1, NO_LIMIT, MakeFromFirst<Amplifiers>),
    Kind(TASK_SET_CPU_FREQ, 1, NO_LIMIT, MakeFromFirst<CpuFreq>),
    Kind(TASK_CAMERA, 1, NO_LIMIT, MakeFromFirst<Camera>),
    Kind(TASK_GPS, 1, NO_LIMIT, MakeFromFirst<Gps>),
    Kind(TASK_LAN, 1, NO_LIMIT, MakeFromFirst<Lan>),
    Kind(TASK_STOP_PLAYLIST, 0, NO_LIMIT, MakeFromFirst<StopPlaylist>),
    Kind(TASK_STOP_MESSAGE, 0, NO_LIMIT, Make<StopMessage>),
    Kind(TASK_STOP_RADIO_FM, 0, NO_LIMIT, Make<StopRadioFm>),
    Kind(TASK_PLAY_STREAM, 1, NO_LIMIT, MakePlayStream),
    Kind(TASK_STOP_STREAM, 0, NO_LIMIT, Make<StopStream>),
    Kind(TASK_ENABLE_AUX, 1, 1, MakeFromFirst<EnableAux>),
    Kind(TASK_REQUEST_PDD_ACTION, 2, 2, MakeRequestPddAction),
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
    return IsTaskKind(type) ? &TABLE[static_cast<size_t>(type)] : nullptr;
}

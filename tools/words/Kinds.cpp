#include "Kinds.h"

#include "Subjects.h"
#include "TaskTable.h"
#include "peers/SoundManager.h"
#include "tasks/Photo.h"

#include <algorithm>
#include <array>

namespace
{

using namespace Subjects;

// Where the arguments stand.
constexpr int NAME = 0;
constexpr int VOLUME = 1;

QString WithVolume(const QString& text, const Requests& requests)
{
    const Request* const volume = Find(requests, SoundManager::SET_PLAYER_VOLUME);
    return volume == nullptr ? text
                             : text + QStringLiteral(" at volume %1").arg(volume->arguments.value(VOLUME).toDouble());
}

QString Light(const Task& /*task*/, const Requests& requests)
{
    if (requests.size() < 2)
        return QStringLiteral("switch the lights off");
    return QStringLiteral("switch the lights on with intensity %1").arg(requests[0].arguments.value(NAME).toUInt());
}

QString Message(const Task& /*task*/, const Requests& requests)
{
    return WithVolume(QStringLiteral("play the message ") + Argument(requests).toString(), requests);
}

QString Playlist(const Task& task, const Requests& requests)
{
    QString text = QStringLiteral("play the playlist ") + Argument(requests).toString();
    const uint track = Track(requests);
    if (track > 1)
        text += QStringLiteral(" from track %1").arg(track);
    text = WithVolume(text, requests);
    return task.m_identifier.isEmpty() ? text : text + QStringLiteral(" under the identifier ") + task.m_identifier;
}

QString Photos(const Task& task, const Requests& requests)
{
    const auto* const photo = qobject_cast<const Photo*>(&task);
    if (photo == nullptr || requests.isEmpty() || requests.last().arguments.isEmpty())
        return QStringLiteral("take one photo");
    const QString text = QStringLiteral("take a photo every %1 s, ").arg(Argument(requests).toInt());
    if (photo->Number() < 0)
        return text + QStringLiteral("without end");
    // A series ends with its first photo at the earliest.
    return text + QStringLiteral("%1 in all").arg(std::max(photo->Number(), 1));
}

QString MasterVolume(const Task& /*task*/, const Requests& requests)
{
    return QStringLiteral("set the master volume to %1").arg(Argument(requests).toDouble());
}

QString Radio(const Task& /*task*/, const Requests& requests)
{
    if (Find(requests, SoundManager::PLAY_RADIO_FM) == nullptr)
        return QStringLiteral("switch the FM radio off");
    return QStringLiteral("switch the FM radio on and tune it to %1 MHz").arg(Argument(requests).toDouble());
}

QString Outputs(const Task& /*task*/, const Requests& requests)
{
    const uint mask = Argument(requests).toUInt();
    if (mask == 0)
        return QStringLiteral("switch all amplifier outputs off");
    return QStringLiteral("switch the amplifier outputs of mask %1 on and all others off").arg(mask);
}

QString Frequency(const Task& /*task*/, const Requests& requests)
{
    return QStringLiteral("set the processor to %1 MHz").arg(Argument(requests).toInt());
}

QString Camera(const Task& /*task*/, const Requests& requests)
{
    return QStringLiteral("switch the camera ") + OnOrOff(Argument(requests).toBool());
}

QString Gps(const Task& /*task*/, const Requests& requests)
{
    return QStringLiteral("switch the GPS receiver ") + OnOrOff(Argument(requests).toBool());
}

QString Lan(const Task& /*task*/, const Requests& requests)
{
    // Only switching on has arguments; the first asks for DHCP.
    return Argument(requests).toBool() ? QStringLiteral("switch the LAN on, with DHCP")
                                       : QStringLiteral("switch the LAN off");
}

QString StopPlaylist(const Task& task, const Requests& /*requests*/)
{
    return task.m_identifier.isEmpty()
               ? QStringLiteral("stop the playlist that plays without an identifier")
               : QStringLiteral("stop the playlist that plays under the identifier ") + task.m_identifier;
}

QString Stream(const Task& /*task*/, const Requests& requests)
{
    return WithVolume(QStringLiteral("play the stream ") + Argument(requests).toString(), requests);
}

QString Auxiliary(const Task& /*task*/, const Requests& requests)
{
    return QStringLiteral("switch the auxiliary input ") + OnOrOff(Find(requests, SoundManager::PLAY_AUX) != nullptr);
}

QString PddAction(const Task& /*task*/, const Requests& requests)
{
    if (requests.isEmpty())
        return QStringLiteral("do nothing: there is no such PDD action");
    const auto action = static_cast<PDD_ACTION>(Argument(requests).toUInt());
    return QStringLiteral("announce that the PDD action %1 is expected %2")
        .arg(QLatin1String(PddActionName(action)), OnOrOff(Argument(requests, 1).toBool()));
}

using enum ParameterRole;
using Roles = ParameterRoles;

constexpr auto NOTHING = [](const Requests&) { return QString(); };
constexpr auto DO_NOTHING = [](const Task&, const Requests&) { return QStringLiteral("do nothing"); };
constexpr auto STOP_MESSAGE = [](const Task&, const Requests&) {
    return QStringLiteral("stop the message that is playing");
};
constexpr auto STOP_STREAM = [](const Task&, const Requests&) {
    return QStringLiteral("stop the stream that is playing");
};

constexpr Kind OTHER{TASK_UNKNOWN, "Other", "setting", false, Roles(), DO_NOTHING, NOTHING};

constexpr std::array TABLE{
    Kind{TASK_LIGHT, "Light", "setting", false, Roles(INTENSITY), Light, Value},
    Kind{TASK_PLAY_MESSAGE, "Message", "message", true, Roles(FILE_NAME, PLAYER_VOLUME), Message, Source},
    Kind{TASK_PLAY_PLAYLIST, "Playlist", "playlist", true, Roles(FILE_NAME, PLAYER_VOLUME, IDENTIFIER), Playlist,
         PlaylistAndTrack},
    // Nothing serves the kind: its lines are rejected, so that there is no task.
    Kind{TASK_RECORD_MIC, "Other", "setting", false, Roles(), DO_NOTHING, NOTHING},
    Kind{TASK_RECORD_PHOTO, "Photo", "setting", false, Roles(PHOTO_INTERVAL, PHOTO_NUMBER), Photos, Value},
    Kind{TASK_VOLUME, "Volume", "setting", false, Roles(MASTER_VOLUME), MasterVolume, Value},
    Kind{TASK_PLAY_RADIO_FM, "Radio", "radio", true, Roles(FREQUENCY), Radio, RadioFrequency},
    Kind{TASK_RECORD_VIDEO, "Other", "setting", false, Roles(), DO_NOTHING, NOTHING},
    Kind{TASK_AMPLIFIERS, "Amplifiers", "setting", false, Roles(MASK), Outputs, Value},
    Kind{TASK_SET_CPU_FREQ, "Processor", "setting", false, Roles(CPU_FREQUENCY), Frequency, Value},
    Kind{TASK_CAMERA, "Camera", "setting", false, Roles(SWITCH), Camera, Value},
    Kind{TASK_GPS, "GPS", "setting", false, Roles(SWITCH), Gps, Value},
    Kind{TASK_LAN, "Network", "setting", false, Roles(SWITCH), Lan, LanSwitch},
    Kind{TASK_STOP_PLAYLIST, "Stop playlist", "playlist", false, Roles(IDENTIFIER), StopPlaylist, StoppedIdentifier},
    Kind{TASK_STOP_MESSAGE, "Stop message", "message", false, Roles(), STOP_MESSAGE, NOTHING},
    Kind{TASK_STOP_RADIO_FM, "Stop radio", "radio", false, Roles(), Radio, NOTHING},
    Kind{TASK_PLAY_STREAM, "Stream", "stream", true, Roles(PORT_AND_PATH, PLAYER_VOLUME), Stream, Source},
    Kind{TASK_STOP_STREAM, "Stop stream", "stream", false, Roles(), STOP_STREAM, NOTHING},
    Kind{TASK_ENABLE_AUX, "Aux input", "aux", false, Roles(SWITCH), Auxiliary, AuxiliarySwitch},
    Kind{TASK_REQUEST_PDD_ACTION, "PDD action", "setting", false, Roles(PDD_NUMBER, SWITCH), PddAction, Value},
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
static_assert(TABLE.size() == TaskTable::SIZE, "every kind of task of the daemon has its row");

} // namespace

const Kind& Kinds::Of(TaskType type)
{
    const auto place = static_cast<size_t>(type);
    return place < TABLE.size() ? TABLE[place] : OTHER;
}

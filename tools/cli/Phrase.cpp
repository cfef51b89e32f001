#include "Phrase.h"

#include "TaskTable.h"
#include "peers/SoundManager.h"
#include "tasks/Photo.h"

#include <algorithm>
#include <array>

namespace
{

using Requests = QList<Request>;

// Where the arguments stand.
constexpr int NAME = 0;
constexpr int VOLUME = 1;
constexpr int PLAYLIST_TRACK = 2;

const Request* Find(const Requests& requests, const char* method)
{
    const auto found = std::ranges::find_if(
        requests, [method](const Request& request) { return request.method == QLatin1String(method); });
    return found != requests.end() ? &*found : nullptr;
}

// The argument of the last request, the one that matters where there are several; invalid where there is none.
QVariant Argument(const Requests& requests, int place = NAME)
{
    return requests.isEmpty() ? QVariant() : requests.last().arguments.value(place);
}

QString OnOrOff(bool on)
{
    return on ? QStringLiteral("on") : QStringLiteral("off");
}

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
    const uint track = Argument(requests, PLAYLIST_TRACK).toUInt();
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

QString StopMessage(const Task& /*task*/, const Requests& /*requests*/)
{
    return QStringLiteral("stop the message that is playing");
}

QString StopRadio(const Task& /*task*/, const Requests& /*requests*/)
{
    return QStringLiteral("switch the FM radio off");
}

QString Stream(const Task& /*task*/, const Requests& requests)
{
    return WithVolume(QStringLiteral("play the stream ") + Argument(requests).toString(), requests);
}

QString StopStream(const Task& /*task*/, const Requests& /*requests*/)
{
    return QStringLiteral("stop the stream that is playing");
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

// Nothing serves the kind: its lines are rejected, so that there is no task.
QString Nothing(const Task& /*task*/, const Requests& /*requests*/)
{
    return QStringLiteral("do nothing");
}

struct PhraseRow
{
    TaskType type;
    QString (*phrase)(const Task& task, const Requests& requests);
};

constexpr std::array TABLE{
    PhraseRow{TASK_LIGHT, Light},
    PhraseRow{TASK_PLAY_MESSAGE, Message},
    PhraseRow{TASK_PLAY_PLAYLIST, Playlist},
    PhraseRow{TASK_RECORD_MIC, Nothing},
    PhraseRow{TASK_RECORD_PHOTO, Photos},
    PhraseRow{TASK_VOLUME, MasterVolume},
    PhraseRow{TASK_PLAY_RADIO_FM, Radio},
    PhraseRow{TASK_RECORD_VIDEO, Nothing},
    PhraseRow{TASK_AMPLIFIERS, Outputs},
    PhraseRow{TASK_SET_CPU_FREQ, Frequency},
    PhraseRow{TASK_CAMERA, Camera},
    PhraseRow{TASK_GPS, Gps},
    PhraseRow{TASK_LAN, Lan},
    PhraseRow{TASK_STOP_PLAYLIST, StopPlaylist},
    PhraseRow{TASK_STOP_MESSAGE, StopMessage},
    PhraseRow{TASK_STOP_RADIO_FM, StopRadio},
    PhraseRow{TASK_PLAY_STREAM, Stream},
    PhraseRow{TASK_STOP_STREAM, StopStream},
    PhraseRow{TASK_ENABLE_AUX, Auxiliary},
    PhraseRow{TASK_REQUEST_PDD_ACTION, PddAction},
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
static_assert(TABLE.size() == TaskTable::SIZE, "every kind of task has its phrase");

} // namespace

QString Phrase::Of(const Task& task, const QList<Request>& requests)
{
    return TABLE.at(static_cast<size_t>(task.m_type)).phrase(task, requests);
}

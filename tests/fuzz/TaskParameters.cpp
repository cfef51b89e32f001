#include "Engine.h"
#include "Findings.h"
#include "Reading.h"
#include "Target.h"
#include "TaskTable.h"
#include "tasks/RequestPddAction.h"

#include <QDebug>

#include <array>
#include <functional>

using namespace Qt::StringLiterals;

// The text of a task's parameters, as the kind's row of the table takes it. Input: a letter from 'a' for the kind's
// number, and the text.

namespace
{

constexpr int KINDS = TASK_REQUEST_PDD_ACTION + 1;
constexpr int SINGLE_PHOTO = 1;
const QString START_TIME = u"08:30:00"_s;

int Int(const QStringList& parameters, int index, int fallback)
{
    return Reading::Number(parameters.value(index)).value_or(fallback);
}

bool IsOn(const QStringList& parameters)
{
    return Int(parameters, 0, 0) == 1;
}

// A playback, with its volume set before it where it has one.
QStringList Playing(const char* player, int volume, const QString& request)
{
    QStringList requests;
    if (volume >= 0)
        requests.append(
            u"sound.SetPlayerVolume sd %1 %2"_s.arg(QLatin1String(player), QVariant(double(volume)).toString()));
    requests.append(u"sound."_s + request);
    return requests;
}

QStringList Light(const QStringList& parameters)
{
    const auto intensity = static_cast<unsigned int>(Int(parameters, 0, 0));
    if (intensity == 0)
        return {u"light.Switch b false"_s};
    return {u"light.SetIntensity u %1"_s.arg(intensity), u"light.Switch b true"_s};
}

QStringList Message(const QStringList& parameters)
{
    return Playing("file", Int(parameters, 1, -1), u"PlayFile ss "_s + parameters[0] + u" 08:30:00"_s);
}

QStringList Playlist(const QStringList& parameters)
{
    return Playing("playlist", Int(parameters, 1, -1),
                   u"PlayPlaylist ssusb "_s + parameters[0] + u' ' + parameters.value(2) + u" 1 08:30:00 false"_s);
}

QStringList Stream(const QStringList& parameters)
{
    return Playing("stream", Int(parameters, 1, -1), u"PlayStream su rtsp://10.0.0.5:"_s + parameters[0] + u" 0"_s);
}

QStringList Photo(const QStringList& parameters)
{
    if (Int(parameters, 1, SINGLE_PHOTO) == SINGLE_PHOTO)
        return {u"photo.TakePhoto -"_s};
    return {u"photo.TakePhotoStream i %1"_s.arg(Int(parameters, 0, 0))};
}

QStringList MasterVolume(const QStringList& parameters)
{
    return {u"sound.SetMasterVolume d %1"_s.arg(QVariant(double(Int(parameters, 0, 0))).toString())};
}

QStringList Radio(const QStringList& parameters)
{
    bool isNumber = false;
    const double frequency = parameters[0].toDouble(&isNumber);
    if (!isNumber || frequency == 0.0)
        return {u"sound.StopPlay ss radiofm "_s};
    return {u"sound.PlayRadioFm -"_s, u"sound.RadioFmSetFrequency d %1"_s.arg(QVariant(frequency).toString())};
}

QStringList Mask(const QStringList& parameters)
{
    return {u"sound.SetAmplifiers y %1"_s.arg(Int(parameters, 0, 0) & 0xff)};
}

QStringList Speed(const QStringList&)
{
    return {u"freq.SetFreq i 456"_s};
}

QStringList Camera(const QStringList& parameters)
{
    return {IsOn(parameters) ? u"photo.EnableCamera b true"_s : u"photo.EnableCamera b false"_s};
}

QStringList Gps(const QStringList& parameters)
{
    return {IsOn(parameters) ? u"gps.SetEnabled b true"_s : u"gps.SetEnabled b false"_s};
}

QStringList Lan(const QStringList& parameters)
{
    return {IsOn(parameters) ? u"network.EnableLan bsss true   "_s : u"network.DisableLan -"_s};
}

QStringList Aux(const QStringList& parameters)
{
    return {IsOn(parameters) ? u"sound.PlayAux -"_s : u"sound.StopPlay ss aux "_s};
}

QStringList StopPlaylist(const QStringList& parameters)
{
    return {u"sound.StopPlay ss playlist "_s + parameters.value(0)};
}

QStringList StopMessage(const QStringList&)
{
    return {u"sound.StopPlay ss file "_s};
}

QStringList StopRadio(const QStringList&)
{
    return {u"sound.StopPlay ss radiofm "_s};
}

QStringList StopStream(const QStringList&)
{
    return {u"sound.StopPlay ss stream "_s};
}

QStringList Nothing(const QStringList&)
{
    return {};
}

// The requests of a task that every peer obeys, by the kind's number.
using Requests = QStringList (*)(const QStringList& parameters);
constexpr std::array<Requests, KINDS> REQUESTS{
    Light,  Message, Playlist, Nothing,      Photo,       MasterVolume, Radio,  Nothing,    Mask, Speed,
    Camera, Gps,     Lan,      StopPlaylist, StopMessage, StopRadio,    Stream, StopStream, Aux,  Nothing};

std::unique_ptr<Task> Create(const TaskKind& kind, const TaskRequest& request)
{
    try
    {
        return kind.create(request);
    }
    catch (const std::exception&)
    {
        // Only a playlist may be impossible.
        EXPECT_EQUAL(kind.type, TASK_PLAY_PLAYLIST);
        return nullptr;
    }
}

QStringList TakeRequests()
{
    QStringList shown;
    for (const PeerRequest& request : Engine::TakeRequests())
        shown.append(request.Shown());
    return shown;
}

// A series of photos ends when its number is reached, one of none with its first photo, one of less never.
void CheckPhotos(const Task& task, const QStringList& parameters)
{
    constexpr unsigned int MOST = 20;
    const auto number = static_cast<unsigned int>(Int(parameters, 1, SINGLE_PHOTO));
    for (unsigned int taken = 1; taken <= std::min(std::max(number, 1U), MOST); ++taken)
    {
        EXPECT_THAT(task.IsRunning(), QByteArray::number(taken));
        Engine::EmitSignals({});
        const bool isLast = taken >= number;
        EXPECT_EQUAL(task.IsRunning(), !isLast);
        const bool hasToStop = isLast && number != SINGLE_PHOTO;
        EXPECT_EQUAL(TakeRequests(), hasToStop ? QStringList{u"photo.StopPhotoStream -"_s} : QStringList{});
    }
}

void CheckPdd(RequestPddAction& task, const QStringList& parameters)
{
    QStringList announced;
    const auto connection =
        QObject::connect(&task, &RequestPddAction::PddAction, &task, [&announced](PDD_ACTION action, bool enable) {
            announced.append(u"%1 %2"_s.arg(action).arg(enable));
        });
    EXPECT_THAT(task.Run(), "an announcement is always accepted");
    EXPECT_THAT(QObject::disconnect(connection), "it was connected");
    const bool isKnown = IsOn(parameters);
    const bool enable = Int(parameters, 1, 0) == 1;
    EXPECT_EQUAL(announced, isKnown ? QStringList{u"1 %1"_s.arg(enable)} : QStringList{});
}

void Check(std::unique_ptr<Task> task, const TaskKind& kind, const QStringList& parameters)
{
    EXPECT_EQUAL(task->m_type, kind.type);
    EXPECT_EQUAL(task->GetName(), QLatin1String(kind.logName));
    EXPECT_THAT(kind.type == TASK_PLAY_PLAYLIST || task->GetDelayable_s() == 0, kind.logName);
    EXPECT_THAT(TakeRequests().isEmpty(), "making a task asks nobody");
    task->PrepareDelayed(0);
    EXPECT_THAT(task->Run(), "the peers accept");
    EXPECT_EQUAL(TakeRequests(), REQUESTS[static_cast<size_t>(kind.type)](parameters));
    if (kind.type == TASK_RECORD_PHOTO)
        CheckPhotos(*task, parameters);
    if (auto* const pdd = qobject_cast<RequestPddAction*>(task.get()))
        CheckPdd(*pdd, parameters);
    for (const Engine::Answer answer : {Engine::REFUSED, Engine::BUS_ERROR})
    {
        Engine::EmitSignals({});
        Engine::TakeRequests();
        Engine::SetAnswer(answer);
        static_cast<void>(task->Run());
        EXPECT_THAT(!task->IsRunning() || kind.type == TASK_RECORD_PHOTO, kind.logName);
    }
    Engine::TakeRequests();
    task.reset();
    EXPECT_THAT(TakeRequests().isEmpty(), kind.logName);
}

} // namespace

void Target::SetUp()
{
    Engine::SetUp();
}

void Target::Run(const QByteArray& input)
{
    Engine::Reset();
    const int number = input.isEmpty() ? 0 : static_cast<unsigned char>(input[0] - 'a') % KINDS;
    const TaskKind& kind = *TaskTable::Find(static_cast<TaskType>(number));
    const QString text = QString::fromUtf8(input.mid(1));
    const QStringList parameters = Reading::Tokens(text, ',');
    if (kind.create == nullptr || !kind.Accepts(parameters.size()))
        return;
    std::unique_ptr<Task> task = Create(kind, {START_TIME, text, parameters});
    if (task != nullptr)
        Check(std::move(task), kind, parameters);
    Engine::ExpectNobodyListens();
}

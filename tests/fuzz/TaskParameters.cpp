#include "Engine.h"
#include "Findings.h"
#include "Reading.h"
#include "Target.h"
#include "TaskTable.h"
#include "tasks/RequestPddAction.h"

#include <QDebug>

#include <array>
#include <functional>

// The text of a task's parameters, as the kind's row of the table takes it. Input: a letter from 'a' for the kind's
// number, and the text.

namespace
{

constexpr int KINDS = TASK_REQUEST_PDD_ACTION + 1;
constexpr int SINGLE_PHOTO = 1;
const QString START_TIME = QStringLiteral("08:30:00");

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
        requests.append(QStringLiteral("soundmanager SetPlayerVolume(s:%1, d:%2)")
                            .arg(QLatin1String(player), QVariant(double(volume)).toString()));
    requests.append(QStringLiteral("soundmanager ") + request);
    return requests;
}

QStringList Light(const QStringList& parameters)
{
    const auto intensity = static_cast<unsigned int>(Int(parameters, 0, 0));
    if (intensity == 0)
        return {QStringLiteral("lightmanager Switch(b:false)")};
    return {QStringLiteral("lightmanager SetIntensity(u:%1)").arg(intensity),
            QStringLiteral("lightmanager Switch(b:true)")};
}

QStringList Message(const QStringList& parameters)
{
    return Playing("file", Int(parameters, 1, -1),
                   QStringLiteral("PlayFile(s:") + parameters[0] + QStringLiteral(", s:08:30:00)"));
}

QStringList Playlist(const QStringList& parameters)
{
    return Playing("playlist", Int(parameters, 1, -1),
                   QStringLiteral("PlayPlaylist(s:") + parameters[0] + QStringLiteral(", s:") + parameters.value(2) +
                       QStringLiteral(", u:1, s:08:30:00, b:false)"));
}

QStringList Stream(const QStringList& parameters)
{
    return Playing("stream", Int(parameters, 1, -1),
                   QStringLiteral("PlayStream(s:rtsp://10.0.0.5:") + parameters[0] + QStringLiteral(", u:0)"));
}

QStringList Photo(const QStringList& parameters)
{
    if (Int(parameters, 1, SINGLE_PHOTO) == SINGLE_PHOTO)
        return {QStringLiteral("photomanager TakePhoto()")};
    return {QStringLiteral("photomanager TakePhotoStream(i:%1)").arg(Int(parameters, 0, 0))};
}

QStringList MasterVolume(const QStringList& parameters)
{
    return {
        QStringLiteral("soundmanager SetMasterVolume(d:%1)").arg(QVariant(double(Int(parameters, 0, 0))).toString())};
}

QStringList Radio(const QStringList& parameters)
{
    bool isNumber = false;
    const double frequency = parameters[0].toDouble(&isNumber);
    if (!isNumber || frequency == 0.0)
        return {QStringLiteral("soundmanager StopPlay(s:radiofm, s:)")};
    return {QStringLiteral("soundmanager PlayRadioFm()"),
            QStringLiteral("soundmanager RadioFmSetFrequency(d:%1)").arg(QVariant(frequency).toString())};
}

QStringList Mask(const QStringList& parameters)
{
    return {QStringLiteral("soundmanager SetAmplifiers(y:%1)").arg(Int(parameters, 0, 0) & 0xff)};
}

QStringList Speed(const QStringList&)
{
    return {QStringLiteral("freqmanager SetFreq(i:456)")};
}

QStringList Camera(const QStringList& parameters)
{
    return {IsOn(parameters) ? QStringLiteral("photomanager EnableCamera(b:true)")
                             : QStringLiteral("photomanager EnableCamera(b:false)")};
}

QStringList Gps(const QStringList& parameters)
{
    return {IsOn(parameters) ? QStringLiteral("gpsmanager SetEnabled(b:true)")
                             : QStringLiteral("gpsmanager SetEnabled(b:false)")};
}

QStringList Lan(const QStringList& parameters)
{
    return {IsOn(parameters) ? QStringLiteral("networkmanager EnableLan(b:true, s:, s:, s:)")
                             : QStringLiteral("networkmanager DisableLan()")};
}

QStringList Aux(const QStringList& parameters)
{
    return {IsOn(parameters) ? QStringLiteral("soundmanager PlayAux()")
                             : QStringLiteral("soundmanager StopPlay(s:aux, s:)")};
}

QStringList StopPlaylist(const QStringList& parameters)
{
    return {QStringLiteral("soundmanager StopPlay(s:playlist, s:") + parameters.value(0) + u')'};
}

QStringList StopMessage(const QStringList&)
{
    return {QStringLiteral("soundmanager StopPlay(s:file, s:)")};
}

QStringList StopRadio(const QStringList&)
{
    return {QStringLiteral("soundmanager StopPlay(s:radiofm, s:)")};
}

QStringList StopStream(const QStringList&)
{
    return {QStringLiteral("soundmanager StopPlay(s:stream, s:)")};
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
        EXPECT_EQUAL(TakeRequests(),
                     hasToStop ? QStringList{QStringLiteral("photomanager StopPhotoStream()")} : QStringList{});
    }
}

void CheckPdd(RequestPddAction& task, const QStringList& parameters)
{
    QStringList announced;
    const auto connection =
        QObject::connect(&task, &RequestPddAction::PddAction, &task, [&announced](PDD_ACTION action, bool enable) {
            announced.append(QStringLiteral("%1 %2").arg(action).arg(enable));
        });
    EXPECT_THAT(task.Run(), "an announcement is always accepted");
    EXPECT_THAT(QObject::disconnect(connection), "it was connected");
    const bool isKnown = IsOn(parameters);
    const bool enable = Int(parameters, 1, 0) == 1;
    EXPECT_EQUAL(announced, isKnown ? QStringList{QStringLiteral("1 %1").arg(enable)} : QStringList{});
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

#include "Engine.h"
#include "Findings.h"
#include "KindReading.h"
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

constexpr int SINGLE_PHOTO = 1;
const QString START_TIME = u"08:30:00"_s;

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
    const auto number = static_cast<unsigned int>(Reading::NumberAt(parameters, 1, SINGLE_PHOTO));
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
    const bool isKnown = Reading::NumberAt(parameters, 0, 0) == 1;
    const bool enable = Reading::NumberAt(parameters, 1, 0) == 1;
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
    EXPECT_EQUAL(TakeRequests(), KindReading::All()[static_cast<size_t>(kind.type)].requests(parameters));
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
    const auto kinds = static_cast<int>(KindReading::All().size());
    const int number = input.isEmpty() ? 0 : static_cast<unsigned char>(input[0] - 'a') % kinds;
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

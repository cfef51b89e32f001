#include "ActionRun.h"

#include "Findings.h"
#include "RequestRules.h"

#include <QDebug>

using namespace Qt::StringLiterals;

namespace
{

bool Plays(TaskType type)
{
    return type == TASK_PLAY_MESSAGE || type == TASK_PLAY_PLAYLIST || type == TASK_PLAY_STREAM;
}

QStringList Shown(const QList<PeerRequest>& requests)
{
    QStringList shown;
    for (const PeerRequest& request : requests)
        shown.append(request.Shown());
    return shown;
}

// The requests of one start.
QStringList Start(Action& action, Engine::Answer answer)
{
    const TaskType type = action.m_task->m_type;
    const QString name = action.m_task->GetName();
    action.m_forced = true;
    EXPECT_THAT(action.IsReady(), name.toUtf8());
    EXPECT_EQUAL(action.m_delay, 0);
    action.Start();
    EXPECT_THAT(!action.m_forced, name.toUtf8());

    const QList<PeerRequest> requests = Engine::TakeRequests();
    EXPECT_THAT(requests.size() <= 2, Shown(requests).join(u' ').toUtf8());
    EXPECT_EQUAL(requests.isEmpty(), type == TASK_REQUEST_PDD_ACTION);
    for (const PeerRequest& request : requests)
        EXPECT_EQUAL(request.service.section(u'.', -1), RequestRules::PeerOf(type));
    // A photo is waited for even where none was granted.
    EXPECT_EQUAL(action.m_task->IsRunning(), type == TASK_RECORD_PHOTO || (Plays(type) && answer == Engine::ACCEPTED));
    const QList<LogRecord> errors = Engine::OfLevel(1, Engine::TakeLog());
    EXPECT_THAT(errors.isEmpty() || answer != Engine::ACCEPTED, errors[0].text);
    return Shown(requests);
}

void Delete(std::unique_ptr<Action> action)
{
    const bool hasToStop = action->m_task->IsRunning() && Plays(action->m_task->m_type);
    const QString identifier = action->m_task->m_identifier;
    action.reset();
    const QList<PeerRequest> requests = Engine::TakeRequests();
    EXPECT_EQUAL(requests.size(), hasToStop ? 1 : 0);
    for (const PeerRequest& request : requests)
    {
        EXPECT_EQUAL(request.method, u"StopPlay"_s);
        EXPECT_EQUAL(request.arguments.value(1).toString(), identifier);
    }
}

} // namespace

void ActionRun::Check(std::unique_ptr<Action> action, Engine::Answer answer)
{
    Engine::TakeLog();
    Engine::SetAnswer(answer);
    const QStringList first = Start(*action, answer);
    Engine::EmitSignals(u"another.mp3"_s);
    // A series of photos goes on after one.
    EXPECT_THAT(!action->m_task->IsRunning() || action->m_task->m_type == TASK_RECORD_PHOTO, "still running");
    Engine::TakeRequests();
    const QStringList second = Start(*action, answer);
    EXPECT_EQUAL(second, first);
    Delete(std::move(action));
    Engine::ExpectNobodyListens();
    Engine::SetAnswer(Engine::ACCEPTED);
}

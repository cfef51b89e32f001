#include "TaskPhrases.h"

#include "engine/ScheduleLine.h"
#include "engine/TaskRequests.h"
#include "words/Kinds.h"

TaskPhrases::Map TaskPhrases::Of(const Workspace& workspace, const QString& name)
{
    // What was started once is not as it was: the rehearsal's result keeps its own.
    std::vector<ScheduleLine> lines = ScheduleLine::ReadFile(workspace, name);
    TaskRequests requests(workspace);
    Map phrases;
    for (ScheduleLine& line : lines)
    {
        if (line.action == nullptr)
            continue;
        const Task& task = *line.action->m_task;
        phrases[line.number] = Kinds::Of(task.m_type).phrase(task, requests.Of(*line.action));
        line.action.reset();
    }
    return phrases;
}

#include "Task.h"

#include "TaskTable.h"

#include <limits>

const char* PddActionName(PDD_ACTION action)
{
    return action == STREAM_MIC ? "STREAM_MIC" : "UNKNOWN";
}

Task::Task(TaskType type, const QString& identifier)
    : m_identifier(identifier)
    , m_type(type)
{
}

Task::~Task() = default;

unsigned int Task::GetDelayable_s() const
{
    return std::numeric_limits<unsigned int>::max();
}

void Task::PrepareDelayed(unsigned int delay_s)
{
    Q_UNUSED(delay_s)
}

bool Task::IsRunning() const
{
    return m_running;
}

void Task::SetCompleted(bool completed)
{
    Q_UNUSED(completed)
}

TaskType Task::NameToType(const QString& name)
{
    bool isNumber = false;
    const int number = name.toInt(&isNumber);
    if (isNumber)
        return static_cast<TaskType>(number);
    const TaskKind* kind = TaskTable::FindByName(name);
    return kind != nullptr ? kind->type : TASK_UNKNOWN;
}

QString Task::GetName() const
{
    const TaskKind* kind = TaskTable::Find(m_type);
    return QString::fromLatin1(kind != nullptr ? kind->logName : TaskTable::UNKNOWN_NAME);
}

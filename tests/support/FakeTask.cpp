#include "FakeTask.h"

using namespace Qt::StringLiterals;

namespace
{

QList<FakeTask*>& LivingTasks()
{
    static QList<FakeTask*> tasks;
    return tasks;
}

} // namespace

FakeTask::FakeTask(TaskType type, const QString& identifier)
    : Task(type, identifier)
{
    LivingTasks().append(this);
}

FakeTask::~FakeTask()
{
    LivingTasks().removeOne(this);
}

unsigned int FakeTask::GetDelayable_s() const
{
    if (m_onAskTolerance)
        m_onAskTolerance();
    return m_tolerance_s;
}

void FakeTask::PrepareDelayed(unsigned int delay_s)
{
    m_calls.append(u"PrepareDelayed %1"_s.arg(delay_s));
}

bool FakeTask::Run()
{
    m_calls.append(u"Run"_s);
    if (m_onRun)
        m_onRun();
    return m_runResult;
}

void FakeTask::SetCompleted(bool completed)
{
    m_calls.append(u"SetCompleted %1"_s.arg(completed ? 1 : 0));
}

const QList<FakeTask*>& FakeTask::Living()
{
    return LivingTasks();
}

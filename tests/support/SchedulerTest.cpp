#include "SchedulerTest.h"

#include "SchedulerAccess.h"
#include "peers/Peers.h"

using namespace Qt::StringLiterals;

namespace
{

QStringList Shown(ActionList& list)
{
    QStringList names;
    for (const auto& action : list)
        names.append(action->m_task->GetName() + u' ' + action->m_startTime.toString(u"HH:mm:ss"_s));
    return names;
}

} // namespace

SchedulerTest::SchedulerTest() = default;

SchedulerTest::~SchedulerTest() = default;

void SchedulerTest::Create()
{
    m_scheduler.reset();
    Peers::DeleteProxies();
    m_scheduler = std::make_unique<Scheduler>(u"schedule.csv"_s);
    LogRecorder::Clear();
}

void SchedulerTest::StartWith(const QByteArrayList& lines)
{
    Data().WriteSchedule(lines.isEmpty() ? QByteArray() : lines.join('\n') + '\n');
    Create();
    m_scheduler->Start();
    LogRecorder::Clear();
}

void SchedulerTest::End()
{
    m_scheduler.reset();
}

void SchedulerTest::CheckFar()
{
    m_scheduler->CheckFarActions();
}

void SchedulerTest::CheckEarly()
{
    m_scheduler->CheckEarlyActions();
}

QStringList SchedulerTest::FarList()
{
    return Shown(SchedulerAccess::FarActions(*m_scheduler));
}

QStringList SchedulerTest::EarlyList()
{
    return Shown(SchedulerAccess::EarlyActions(*m_scheduler));
}

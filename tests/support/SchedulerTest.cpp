#include "SchedulerTest.h"

#include "Clock.h"
#include "SchedulerAccess.h"
#include "peers/Peers.h"

#include <algorithm>

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

void SchedulerTest::PassTime(int span_ms, int firstFar_ms, const std::function<void()>& after)
{
    int toFar_ms = firstFar_ms;
    for (int left_ms = span_ms;;)
    {
        int step_ms = toFar_ms;
        if (SchedulerAccess::EarlyActions(*m_scheduler).Size() > 0)
        {
            const int inFifth_ms = Clock::IntoSecond_ms() % Scheduler::EARLY_INTERVAL_MS;
            step_ms = std::min(step_ms, Scheduler::EARLY_INTERVAL_MS - inFifth_ms);
        }
        if (step_ms > left_ms)
        {
            Time().Advance_ms(left_ms);
            break;
        }
        Time().Advance_ms(step_ms);
        left_ms -= step_ms;
        toFar_ms -= step_ms;
        if (toFar_ms == 0)
        {
            CheckFar();
            toFar_ms = Scheduler::FAR_INTERVAL_MS;
        }
        CheckEarly();
        after();
    }
}

QStringList SchedulerTest::FarList()
{
    return Shown(SchedulerAccess::FarActions(*m_scheduler));
}

QStringList SchedulerTest::EarlyList()
{
    return Shown(SchedulerAccess::EarlyActions(*m_scheduler));
}

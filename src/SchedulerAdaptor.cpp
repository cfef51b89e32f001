#include "SchedulerAdaptor.h"

#include "Scheduler.h"

SchedulerAdaptor::SchedulerAdaptor(Scheduler* scheduler)
    : QDBusAbstractAdaptor(scheduler)
    , m_scheduler(*scheduler)
{
    setAutoRelaySignals(true);
}

SchedulerAdaptor::~SchedulerAdaptor() = default;

int SchedulerAdaptor::IsEnabled(bool& enabled, QString& filename)
{
    return m_scheduler.IsEnabled(enabled, filename);
}

int SchedulerAdaptor::Reload()
{
    return m_scheduler.Reload();
}

int SchedulerAdaptor::SetEnabled(bool enabled)
{
    return m_scheduler.SetEnabled(enabled);
}

int SchedulerAdaptor::SetScheduleFile(const QString& filename)
{
    return m_scheduler.SetScheduleFile(filename);
}

#include "SchedulerAdaptor.h"

#include "Scheduler.h"

SchedulerAdaptor::SchedulerAdaptor(Scheduler* scheduler)
    : QDBusAbstractAdaptor(scheduler)
{
    setAutoRelaySignals(true);
}

SchedulerAdaptor::~SchedulerAdaptor() = default;

Scheduler& SchedulerAdaptor::Parent() const
{
    return *static_cast<Scheduler*>(parent());
}

int SchedulerAdaptor::IsEnabled(bool& enabled, QString& filename)
{
    return Parent().IsEnabled(enabled, filename);
}

int SchedulerAdaptor::Reload()
{
    return Parent().Reload();
}

int SchedulerAdaptor::SetEnabled(bool enabled)
{
    return Parent().SetEnabled(enabled);
}

int SchedulerAdaptor::SetScheduleFile(const QString& filename)
{
    return Parent().SetScheduleFile(filename);
}

#pragma once

#include <SchedulerIntrospection.h>

#include <QDBusAbstractAdaptor>

class Scheduler;

// The scheduler's face on the session bus: forwards each method to the slot of the same name and relays the
// scheduler's two signals. Child of the scheduler, which deletes it. Every method answers with the status 0.
class SchedulerAdaptor final : public QDBusAbstractAdaptor
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.kestrelix.ozna.schedulerinterface")
    Q_CLASSINFO("D-Bus Introspection", SCHEDULER_INTROSPECTION)
public:
    explicit SchedulerAdaptor(Scheduler* scheduler);
    ~SchedulerAdaptor() override;

Q_SIGNALS:
    // A PDD action is expected. actionId: the values of PDD_ACTION.
    void ExpectedPddAction(uint actionId, bool enable);

    // After every SetEnabled and every automatic re-enabling, with the resulting state.
    void SchedulingEnabled(bool enabled, const QString& filename);

public Q_SLOTS:
    int IsEnabled(bool& enabled, QString& filename);
    int Reload();
    int SetEnabled(bool enabled);
    int SetScheduleFile(const QString& filename);

private:
    Scheduler& Parent() const;
};

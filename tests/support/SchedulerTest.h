#pragma once

#include "Scheduler.h"
#include "UnitTest.h"

#include <QByteArrayList>

#include <functional>
#include <memory>

// The fixture of the tests that have a scheduler. Its timers do not fire while no event loop runs: a test calls the
// passes itself.
class SchedulerTest : public UnitTest
{
    Q_OBJECT
public:
    SchedulerTest();
    ~SchedulerTest() override;

protected:
    // Makes the scheduler anew, for "schedule.csv", without starting it. The log keeps nothing of it.
    void Create();

    // Makes the scheduler anew on a schedule file with these lines and starts it. The log keeps nothing of it.
    void StartWith(const QByteArrayList& lines);

    // Deletes the scheduler.
    void End() override;

    Scheduler& Engine() { return *m_scheduler; }

    // One pass each.
    void CheckFar();
    void CheckEarly();

    // Lets that much time pass, what a pass itself takes apart, with the passes as the timers have them: the first far
    // one after firstFar_ms, the others every 3 s; an early one behind each of them and, while an action is in the
    // early list, at each fifth of a second. Calls after behind each pass.
    void PassTime(
        int span_ms, int firstFar_ms, const std::function<void()>& after = [] {});

    // The actions of the two lists in order, each as its task's name and its start: "Volume 12:00:10".
    QStringList FarList();
    QStringList EarlyList();

private:
    std::unique_ptr<Scheduler> m_scheduler;
};

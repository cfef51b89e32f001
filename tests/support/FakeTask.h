#pragma once

#include "Task.h"

#include <QList>
#include <QStringList>

#include <functional>

// A task that does nothing but tell what is asked of it, and that says of itself what a test wants.
class FakeTask final : public Task
{
public:
    explicit FakeTask(TaskType type, const QString& identifier = {});
    ~FakeTask() override;

    unsigned int GetDelayable_s() const override;
    void PrepareDelayed(unsigned int delay_s) override;
    bool Run() override;
    void SetCompleted(bool completed) override;

    // The fake tasks that live, in the order of their making.
    static const QList<FakeTask*>& Living();

    unsigned int m_tolerance_s = 0;
    std::function<void()> m_onAskTolerance; // called by GetDelayable_s, may be empty
    bool m_runResult = true;
    std::function<void()> m_onRun; // called by Run, may be empty
    // What was asked: "PrepareDelayed 60", "Run", "SetCompleted 1".
    QStringList m_calls;
};

#pragma once

#include "Task.h"

// A task that never starts late.
class PunctualTask : public Task
{
public:
    using Task::Task;
    ~PunctualTask() override;

    unsigned int GetDelayable_s() const final;
    unsigned int GetMostDelayable_s() const final;
};

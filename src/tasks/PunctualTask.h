#pragma once

#include "Task.h"

// A task that is started in time or not at all.
class PunctualTask : public Task
{
public:
    using Task::Task;
    ~PunctualTask() override;

    unsigned int GetDelayable_s() const final;
};

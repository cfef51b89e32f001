#include "PunctualTask.h"

PunctualTask::~PunctualTask() = default;

unsigned int PunctualTask::GetDelayable_s() const
{
    return 0;
}

unsigned int PunctualTask::GetMostDelayable_s() const
{
    return 0;
}

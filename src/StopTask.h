#pragma once

#include "Log.h"
#include "Task.h"

// What the tasks that stop a sound source share. They differ in the source that they name.
class StopTask : public Task
{
protected:
    // source: what to stop, with static storage.
    StopTask(TaskType type, const char* source, const QString& identifier = {});

    // Asks the sound manager to stop the source; true when it accepted. The outcome is logged with the caller's site.
    [[nodiscard]] bool RequestStop(Log::Site site) const;

public:
    unsigned int GetDelayable_s() const final;

private:
    const char* const m_source;
};

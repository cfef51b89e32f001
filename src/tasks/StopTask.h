#pragma once

#include "Log.h"
#include "PunctualTask.h"

// What the tasks that stop a sound source share. They differ in the source that they name.
class StopTask : public PunctualTask
{
protected:
    // source: what to stop, with static storage.
    StopTask(TaskType type, const char* source, const QString& identifier = {});

    // Asks the sound manager to stop the source; true when it accepted. The outcome is logged with the caller's site.
    [[nodiscard]] bool RequestStop(Log::Site site) const;

private:
    const char* const m_source;
};

#pragma once

#include "Log.h"
#include "Scheduler.h"
#include "Task.h"

#include <SoundManagerProxy.h>

// What the tasks that start a playback with a volume of its own and wait for its end share.
class PlayTask : public Task
{
protected:
    // source: what plays, with static storage. volume: a decimal number, negative to leave the volume alone;
    // what is no number is logged with the caller's site and leaves it alone too.
    PlayTask(TaskType type, const char* source, const QString& identifier, const QString& volume, Log::Site site);

    // Marks the task as running and sets the player's volume where the task has one. The volume's outcome is ignored:
    // a playback at the wrong volume beats none.
    void BeginRequest();

    // Has slot called at every emission of the sound manager's signal, until EndWait. A failure is logged with site.
    template <typename Signal, typename Derived, typename Slot>
    void BeginWait(Signal signal, Derived* self, Slot slot, Log::Site site)
    {
        if (!connect(Scheduler::m_soundManProxy, signal, self, slot))
            OZNA_LOG_AT(site, LEVEL_WARNING, "Can't wait for the end of %s", qPrintable(GetName()));
    }

    // The playback has ended: the signal no longer concerns the task. A failure is logged with site.
    template <typename Signal, typename Derived, typename Slot>
    void EndWait(Signal signal, Derived* self, Slot slot, Log::Site site)
    {
        if (!disconnect(Scheduler::m_soundManProxy, signal, self, slot))
            OZNA_LOG_AT(site, LEVEL_WARNING, "Can't stop waiting for the end of %s", qPrintable(GetName()));
        m_running = false;
    }

    // Stops the playback; the task stays running when the sound manager does not accept. True when it did.
    [[nodiscard]] bool StopPlayback();

    [[nodiscard]] int Volume() const { return m_volume; }

private:
    const char* const m_source;
    const int m_volume;
};

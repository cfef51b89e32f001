#pragma once

#include "Log.h"
#include "Task.h"
#include "peers/PeerReply.h"
#include "peers/SoundManager.h"
#include "peers/SoundSignals.h"

#include <QDBusPendingCallWatcher>
#include <QMetaObject>

#include <functional>

// Base of the tasks that start a playback, with its own volume, and wait for its end.
class PlayTask : public Task
{
protected:
    // volume: a decimal number, negative to leave the volume alone;
    // what is no number is logged with the caller's site and leaves it alone too.
    PlayTask(TaskType type, const QString& identifier, const QString& volume, Log::Site site);

    // Marks the task as running and sets the player's volume where the task has one. The volume's outcome is ignored:
    // a playback at the wrong volume beats none. No signal concerns the task any more until BeginWait.
    void BeginRequest();

    // The sound manager has accepted the playback: slot is called at every emission of its signal that the bus
    // delivers after that answer, until EndWait. A failure is logged with site.
    template <typename Signal, typename Derived, typename Slot>
    void BeginWait(const PeerReply& reply, Signal signal, Derived* self, Slot slot, Log::Site site)
    {
        HandOver(SoundManager::Owner(), reply);
        AtTurn(reply, site, [this, signal, self, slot] {
            WorkBegun().ended = connect(SoundManager::Signals(), signal, self, slot);
            return static_cast<bool>(WorkBegun().ended);
        });
    }

    // The playback has ended: the signal no longer concerns the task. A failure is logged with site.
    void EndWait(Log::Site site);

    // Stops the playback; the task stays running when the sound manager does not accept. True when it did.
    [[nodiscard]] bool StopPlayback();

    [[nodiscard]] int Volume() const { return m_volume; }

private:
    void AtTurn(const PeerReply& reply, Log::Site site, const std::function<bool()>& listen);

    // What plays, as the sound manager calls it.
    [[nodiscard]] virtual const char* Source() const = 0;

    const int m_volume;
};

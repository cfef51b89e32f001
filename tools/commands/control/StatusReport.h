#pragma once

#include "HeldLines.h"
#include "control/LogRecords.h"
#include "control/PeerPresence.h"
#include "control/SchedulerLink.h"
#include "engine/Event.h"

#include <QString>

#include <optional>
#include <vector>

// What there is to say of the daemon. Moments in milliseconds since 1970-01-01 00:00:00 UTC.
struct StatusReport
{
    qint64 now_ms;
    SchedulerLink::State state;
    qint64 processId;
    std::optional<qint64> since_ms; // the process was started then; none: the system does not tell

    QString path;                          // of the schedule
    QString unreadable = {};               // why it cannot be read; empty: it can
    std::optional<qint64> changed_ms = {}; // when the file was changed
    HeldLines held = {};

    std::vector<Event> playing = {}; // what plays now, by the schedule
    std::optional<Event> next = {};  // none within the time that was looked at

    std::vector<PeerPresence::Peer> peers = {};
    std::optional<std::vector<LoggedRecord>> records = {}; // none: there is no log to read
    QString log = {};                                      // where they are from

    // Whether the daemon may run an earlier content of the file: it was changed after the daemon was started, and
    // nobody knows of a reload since.
    [[nodiscard]] bool MayBeOutdated() const
    {
        return since_ms && changed_ms && *changed_ms > *since_ms + START_ACCURACY_MS;
    }

    // Of since_ms: the system counts from its own start, and tells that to the second.
    static constexpr qint64 START_ACCURACY_MS = 2000;
};

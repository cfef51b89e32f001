#pragma once

#include "Request.h"
#include "Task.h"
#include "base/Moment.h"

#include <QList>
#include <QString>
#include <QTime>

#include <algorithm>
#include <cstdint>

// What becomes of an entry at one of its times.
enum class EventKind : std::uint8_t
{
    START,    // its task is run
    SKIPPED,  // a playlist that is not started, as its stop is too near
    LOST,     // found too late to be prepared
    MISSED,   // due, and never found
    FOLLOWUP, // requests that answer a peer's signal, as the end of a series of photos
};

inline constexpr size_t EVENT_KINDS = static_cast<size_t>(EventKind::FOLLOWUP) + 1;

// One track of a playlist, as it will be heard.
struct TrackTime
{
    qint64 begin_ms;
    qint64 end_ms;
    QString file;
};

// One thing that a rehearsal brought about. All moments are milliseconds since 1970-01-01 00:00:00 UTC.
struct Event
{
    static constexpr qint64 OPEN = -1;
    static constexpr int PHASES_MS = 3000; // all of them

    EventKind kind = EventKind::START;
    qint64 moment_ms = 0; // when the daemon acts; of what it misses, when it was due
    qint64 due_ms = 0;    // the entry's own time
    QTime leftOut;        // the same where the clocks leave it out, and due_ms is another; invalid elsewhere
    int lineNumber = 0;
    TaskType type = TASK_UNKNOWN;
    QString taskName;          // as a schedule has it
    int delay_s = 0;           // how late it is started, 0 in time
    bool isForced = false;     // the light or radio state that should be in force when the schedule is loaded
    bool isRepeated = false;   // started before for the same day
    bool isStartKnown = true;  // false: it began before all that was rehearsed, and all its moments but the end are one
                               // at which that may have been
    QString reason;            // why it is marked, for people; empty where there is nothing to say
    QList<Request> requests;   // in order
    bool plays = false;        // has begun a playback, to which the rest belongs
    qint64 begin_ms = 0;       // when it is first heard
    qint64 end_ms = OPEN;      // OPEN: it goes on at the end of the rehearsal
    int phases_ms = PHASES_MS; // of the phases of the daemon's far timer, those in which it is found; 0: not known
    int stoppedByLine = 0;     // the line whose request ended it before its time
    int riskLine = 0;          // the line whose peer makes the daemon miss this start if it does not answer; 0: none
    qint64 riskUntil_ms = 0;   // how long that one may keep the daemon waiting
    QList<TrackTime> tracks;   // of a playlist, from the one that it is joined at

    // Whether it depends on when the daemon was started, which nobody knows, if it comes.
    [[nodiscard]] bool IsByChance() const { return phases_ms > 0 && phases_ms < PHASES_MS; }

    // Whether its player was asked ahead of the time, but told none, so that it may begin at once.
    [[nodiscard]] bool IsUntimed() const { return plays && moment_ms < due_ms && begin_ms <= moment_ms; }

    // When what it is about begins: a message is asked for ahead of its time, a late playlist behind it.
    [[nodiscard]] qint64 Start_ms() const { return std::max(moment_ms, due_ms); }

    // What the schedule has for due_ms.
    [[nodiscard]] QTime DueTime() const { return leftOut.isValid() ? leftOut : Moment::LocalTime(due_ms); }

    // Whether the daemon sends requests there.
    [[nodiscard]] bool Acts() const { return kind == EventKind::START || kind == EventKind::FOLLOWUP; }
};

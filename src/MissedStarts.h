#pragma once

#include "Clock.h"
#include "starts/MissedStart.h"
#include "starts/Passage.h"
#include "starts/PassedStart.h"
#include "starts/StartIndex.h"

#include <optional>
#include <utility>
#include <vector>

// Finds the starts that were missed, and why. It compares two readings of the local time: every time in between has
// passed, even if a clock step or the change to summer time skipped it. A time that comes again has not passed.
//
// A start is answered when its action is started, joined late, found lost, or skipped for a stop that is near. The
// action notes its last answer. The task logs what becomes of the request.
class MissedStarts final
{
public:
    // starts: of the schedule that is loaded; outlives this.
    explicit MissedStarts(const StartIndex& starts)
        : m_starts(starts)
    {
    }

    // The schedule has been loaded. Starts that were due up to since are not counted.
    void Load(const Clock::Reading& since);

    // The schedule and its actions are about to be deleted: stop looking at them.
    void Stop();

    // The same before an immediate reload, which prevents starts that would still have come: they count as missed.
    // Returns the moment up to which starts were counted.
    Clock::Reading Restart();

    // The action is answered now. isLate: after its time.
    static void Answer(Action& action, bool isLate);

    // A far pass begins at that moment. Returns the missed starts, in order of time, and logs them at level 2: the
    // latest with a record each, the number of the others in one record. What is watched closely may still be started.
    std::vector<MissedStart> Look(const Clock::Reading& now);

private:
    void LookAt(const Passage& passage);
    void Tell() const;
    void OpenPassed(const Passage& passage);
    [[nodiscard]] bool IsJudged(std::int64_t due_s) const;
    void DropComing(std::int64_t now_s);
    void Settle(const Clock::Reading& now);
    void NoteBusy(std::int64_t now_s);
    void Close(const Clock::Reading& now, bool isRestart);
    [[nodiscard]] bool IsBusy(const Action& action, std::int64_t due_s) const;
    void Add(const PassedStart& start, const QString& cause);

    const StartIndex& m_starts;
    std::optional<Clock::Reading> m_last; // look, or load; none while nothing is loaded
    std::int64_t m_loaded_ms = 0;         // by the clock on the wall
    std::int64_t m_seen_s = 0;            // up to here all starts were looked at
    std::int64_t m_judged_s = 0;          // the latest moment up to which they were, also where the clock was put back
    std::vector<PassedStart> m_open;
    std::vector<std::pair<const Action*, std::int64_t>> m_busy; // starts to come whose task is under way; sorted
    std::vector<MissedStart> m_missed;                          // not told yet
    bool m_areAll = true; // false: there were older ones, too many to be looked at
};

#pragma once

#include "Clock.h"
#include "starts/MissedStart.h"
#include "starts/Passage.h"
#include "starts/PassedStart.h"
#include "starts/StartIndex.h"

#include <optional>
#include <utility>
#include <vector>

// Finds the starts that pass without anything, and why. It looks at the clock on the wall: what it showed between two
// looks has passed, also what a step or a change to summer time left out. What it shows once more has not.
//
// A start is answered when its action is started, joined late, found lost, or skipped for a stop that is near; an
// answer is noted in the action. What becomes of the request is the task's to tell.
class MissedStarts final
{
public:
    // The schedule has been loaded. What was due up to since is no concern of it.
    void Load(const ActionList& actions, const Clock::Reading& since);

    // The schedule goes, and its actions with it: from now on it is not looked at.
    void Stop(const ActionList& watched);

    // The same, to be loaded anew at once, which takes the start from what would still have been started. Gives the
    // moment up to which it was looked at.
    Clock::Reading Restart(const ActionList& watched);

    // The action is answered now. isLate: after its time.
    static void Answer(Action& action, bool isLate);

    // A far pass begins. watched: the actions that were found early before, which may still be started. Gives what has
    // been missed, in the order of the times, and logs it at level 2: the latest with a record each, the others
    // counted.
    std::vector<MissedStart> Look(const ActionList& watched);

private:
    void LookAt(const Passage& passage);
    void Tell() const;
    void OpenPassed(const Passage& passage);
    void DropComing(std::int64_t now_s);
    void Settle(const ActionList& watched, const Clock::Reading& now);
    void NoteBusy(std::int64_t now_s);
    void Close(const ActionList& watched, const Clock::Reading& now, bool isRestart);
    [[nodiscard]] bool IsBusy(const Action& action, std::int64_t due_s) const;
    void Add(const PassedStart& start, const QString& cause);

    StartIndex m_index;
    std::optional<Clock::Reading> m_last; // look, or load; none while nothing is loaded
    std::int64_t m_loaded_ms = 0;         // by the clock on the wall
    std::int64_t m_seen_s = 0;            // up to here all starts were looked at
    std::vector<PassedStart> m_open;
    std::vector<std::pair<const Action*, std::int64_t>> m_busy; // starts to come whose task is still under way
    std::vector<MissedStart> m_missed; // not told yet
    bool m_areAll = true;              // false: there were older ones, too many to be looked at
};

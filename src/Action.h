#pragma once

#include "ActionDays.h"
#include "Task.h"

#include <QObject>
#include <QTime>

#include <cstdint>
#include <limits>
#include <memory>
#include <optional>

class LineFields;

// One entry of the schedule: on which days and at what time of day which task is done. Owns its task; has no parent.
//
// A line has fields separated by "|": days of week (seven characters, Monday to Sunday, "1" means due), start time
// (hour:minute:second), spot day, spot month, spot year, valid from, valid to (yyyyMMdd or empty), task (name or
// number), and optionally the task's parameters separated by ",".
//
// The predicates keep no history: each call decides from the clock of that moment.
class Action final : public QObject, public ActionDays
{
    Q_OBJECT
public:
    // Logs what it understood. Throws Rejection, with the reason logged at level 1, on a line that cannot become an
    // action.
    explicit Action(const QString& line);
    ~Action() override;

    // Due today and starting within seconds, forced, or late but within what the task tolerates.
    bool IsEarly() const;

    // Starting within the next seconds.
    bool IsAhead() const;

    // Its start in seconds after midnight, with parts out of range carried over; negative before that midnight.
    std::int64_t SecondsAfterMidnight() const;

    // The same as a second of the day; none if it is on another day.
    std::optional<int> StartSecond() const;

    // Whether the task may be started late at all: a playlist that has not been played to its end.
    bool ToleratesLateness() const;

    // Late, but within what the task tolerates.
    bool IsLateStart() const;

    // Time to start now. Sets m_delay.
    bool IsReady();

    // After IsReady: forced, or behind its start. What tolerates to be a day late is also ready within the seconds
    // ahead of its start, as if it were yesterday's; it comes in time, as its request carries the start time.
    bool IsBehind() const { return m_forced || (m_delay > 0 && !IsAhead()); }

    // A message or playlist so close to its start that it can no longer be prepared.
    bool IsLost() const;

    // Prepares and runs the task; blocks while the task does.
    void Start();

    // Seconds around the start, the last one included.
    static constexpr int EARLY_S = 12;
    static constexpr int PREPARED_AHEAD_S = 8; // how far ahead of its start a message or playlist is requested
    static constexpr int IN_TIME_S = 2;

    // A span of time around a start, in whole seconds that are left until the start: negative after it. Both ends are
    // part of it; it counts down, from first_s to last_s.
    struct Window
    {
        std::int64_t first_s = 0;
        std::int64_t last_s = 1;

        [[nodiscard]] constexpr bool IsEmpty() const { return first_s < last_s; }
        [[nodiscard]] constexpr bool Has(std::int64_t left_s) const { return left_s <= first_s && left_s >= last_s; }
    };

    // When the predicates hold, but for what else they ask for: IsAhead; IsLateStart; IsReady in time, and late. The
    // windows of what is late count from the start that came last.
    static constexpr Window AHEAD{EARLY_S, 1};
    [[nodiscard]] Window LateStart() const;
    [[nodiscard]] Window InTime() const;
    [[nodiscard]] Window Delayed() const;

    // Whether the request is sent ahead of the start, and the peer starts it itself at the start time.
    bool IsPrepared() const;

    // Whether the entry is due on that local date, at its start time.
    bool IsDueOn(const QDate& date) const;

    // Whether it may ever emit PddActionRequested.
    bool CanRequestPddAction() const;

    bool m_forced = false; // to be started at once; set right after the load, cleared by Start

    // Set by the list that it is in: whether that is the list of the actions that are watched closely, and its place
    // there, which grows towards the end.
    bool m_isWatched = false;
    std::uint32_t m_place = 0;

    int m_lineNumber = 0; // of the schedule file; 0 for an action that comes from none
    std::unique_ptr<Task> m_task;
    int m_hour = 0; // as the line gives it, not checked
    int m_minute = 0;
    int m_second = 0;
    QTime m_startTime; // invalid when the three are out of range
    int m_delay = 0;   // by how many seconds the start is late, from IsReady for the Start that follows

    // The day of the last start that was answered, as StartIndex counts them.
    std::int32_t m_answeredDay = NO_DAY;
    static constexpr std::int32_t NO_DAY = std::numeric_limits<std::int32_t>::min();

Q_SIGNALS:
    void PddActionRequested(PDD_ACTION action, bool enable);

public Q_SLOTS:
    // Forwards what the task asks for as PddActionRequested, unchanged.
    void OnPddActionRequest(PDD_ACTION action, bool enable);

private:
    void ParseStartTime(QLatin1String field);
    void ParseSpotDate(const LineFields& fields);
    void LogSummary(const LineFields& fields, TaskType type) const;
    void CreateTask(TaskType type, const LineFields& fields);

    int SecondsToStart() const; // negative after the start
};

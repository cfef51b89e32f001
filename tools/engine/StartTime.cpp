#include "StartTime.h"

#include "Event.h"
#include "base/Moment.h"

namespace
{

constexpr int MINUTE_S = 60;
constexpr int HOUR_S = 3600;
constexpr qint64 SECONDS_OF_LUCK = Event::PHASES_MS / Moment::MS_PER_S;

bool IsLateAtMidnight(const Action& action)
{
    return QTime(0, 0).secsTo(StartTime::ForLateness(action)) < SECONDS_OF_LUCK;
}

// Of the day, or beyond it.
qint64 Second(const Action& action)
{
    return qint64{action.m_hour} * HOUR_S + qint64{action.m_minute} * MINUTE_S + qint64{action.m_second};
}

} // namespace

QTime StartTime::Of(const Action& action)
{
    const qint64 second = Second(action);
    return second < 0 || second >= Moment::DAY_S ? QTime() : QTime(0, 0).addSecs(static_cast<int>(second));
}

StartTime::Fate StartTime::FateOf(const Action& action)
{
    const QTime time = Of(action);
    if (!time.isValid())
        return IsAskedForTheEveningBefore(action) ? Fate::EVENING_BEFORE : Fate::NEVER;
    const int second = QTime(0, 0).secsTo(time);
    if (second >= SECONDS_OF_LUCK)
        return Fate::COMES;
    return second == 0 ? Fate::NEVER : Fate::BY_CHANCE;
}

int StartTime::Phases_ms(const Action& action)
{
    return Of(action).msecsSinceStartOfDay();
}

bool StartTime::IsAskedForTheEveningBefore(const Action& action)
{
    const qint64 second = Second(action);
    return action.IsPrepared() && second >= Moment::DAY_S && second < Moment::DAY_S + Action::PREPARED_AHEAD_S;
}

QTime StartTime::ForLateness(const Action& action)
{
    return action.m_startTime.isValid() ? action.m_startTime : QTime(0, 0);
}

bool StartTime::IsFoundAtMidnight(const Action& action)
{
    return IsLateAtMidnight(action) && !action.LateStart().IsEmpty();
}

StartTime::Answer StartTime::FoundAtMidnight(const Action& action, bool areTracksKnown)
{
    if (!areTracksKnown && action.m_task->m_type == TASK_PLAY_PLAYLIST && IsLateAtMidnight(action))
        return Answer::PERHAPS;
    return IsFoundAtMidnight(action) ? Answer::YES : Answer::NO;
}

bool StartTime::IsForcedByEveryLoad(const Action& action)
{
    const TaskType type = action.m_task->m_type;
    return ForLateness(action) == QTime(0, 0) && (type == TASK_LIGHT || type == TASK_PLAY_RADIO_FM);
}

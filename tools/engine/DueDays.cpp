#include "DueDays.h"

#include "Clock.h"
#include "base/Moment.h"
#include "text/ScheduleFields.h"

#include <algorithm>

namespace
{

using ScheduleFields::DAYS_A_WEEK;

constexpr int NOON_HOUR = 12;
const QDate FIRST_DATE(1970, 1, 1);

// When the daemon begins to look for what starts at that time, on the same date.
QTime LookTime(const QTime& time)
{
    const QTime start = time.isValid() ? time : QTime(NOON_HOUR, 0);
    return start.addSecs(-std::min(Action::EARLY_S, QTime(0, 0).secsTo(start)));
}

// Whether a date can be one of those that the action's spot fields allow. The date in UTC is a day off at most.
bool IsInSpotMonth(const Action& action, const QDate& date)
{
    return action.m_dow != 0 || action.m_month == ScheduleFields::ANY || date.month() == action.m_month ||
           date.addDays(1).month() == action.m_month || date.addDays(-1).month() == action.m_month;
}

} // namespace

DueDays::DueDays()
{
    Clock::SetSource([this] { return m_now_ms; });
}

DueDays::~DueDays()
{
    Clock::SetSource({});
}

void DueDays::Show(const QTime& time, const QDate& date)
{
    m_now_ms = Moment::FromLocal_ms(date, LookTime(time));
}

const DueDays::Day& DueDays::DayOf(const QDate& date)
{
    const auto known = m_days.constFind(date);
    if (known != m_days.constEnd())
        return *known;
    const qint64 begin_ms = Moment::FromLocal_ms(date, QTime(0, 0));
    const qint64 end_ms = Moment::FromLocal_ms(date.addDays(1), QTime(0, 0));
    const bool isPlain = Moment::LocalTime(begin_ms) == QTime(0, 0) && end_ms - begin_ms == Moment::DAY_MS;
    return *m_days.insert(date, {isPlain, begin_ms});
}

// At that time of a plain day.
QDate DueDays::UtcDate(const Day& day, const QTime& time)
{
    const qint64 moment_ms = day.begin_ms + LookTime(time).msecsSinceStartOfDay();
    const qint64 rest_ms = (moment_ms % Moment::DAY_MS + Moment::DAY_MS) % Moment::DAY_MS;
    return FIRST_DATE.addDays((moment_ms - rest_ms) / Moment::DAY_MS);
}

bool DueDays::IsDue(const Action& action, const QDate& date)
{
    // The clock would say the same, and takes its time.
    if (const Day& day = DayOf(date); day.isPlain)
        return action.IsDue(date.dayOfWeek() % DAYS_A_WEEK, date,
                            action.HasSpotDate() ? UtcDate(day, action.m_startTime) : QDate());
    Show(action.m_startTime, date);
    return action.IsDueToday();
}

QDate DueDays::FirstDue(const Action& action, const QDate& first, const QDate& last)
{
    for (QDate date = first; date <= last; date = date.addDays(1))
    {
        if (IsInSpotMonth(action, date) && IsDue(action, date))
            return date;
    }
    return {};
}

QDate DueDays::LastDue(const Action& action, const QDate& first, const QDate& last, bool isPlain)
{
    for (QDate date = last; date >= first; date = date.addDays(-1))
    {
        if (IsInSpotMonth(action, date) && (!isPlain || IsPlain(date)) && IsDue(action, date))
            return date;
    }
    return {};
}

bool DueDays::IsUtcDateOther(const QTime& time, const QDate& date)
{
    if (const Day& day = DayOf(date); day.isPlain)
        return UtcDate(day, time) != date;
    Show(time, date);
    return Clock::UtcToday() != Clock::LocalToday();
}

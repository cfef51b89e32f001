#include "DueDays.h"

#include "Clock.h"
#include "base/Moment.h"
#include "text/ScheduleFields.h"

#include <algorithm>

namespace
{

constexpr int NOON_HOUR = 12;

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
    const QTime start = time.isValid() ? time : QTime(NOON_HOUR, 0);
    const int ahead_s = std::min(Action::EARLY_S, QTime(0, 0).secsTo(start));
    m_now_ms = Moment::FromLocal_ms(date, start.addSecs(-ahead_s));
}

bool DueDays::IsDue(const Action& action, const QDate& date)
{
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

bool DueDays::IsUtcDateOther(const QTime& time, const QDate& date)
{
    Show(time, date);
    return Clock::UtcToday() != Clock::LocalToday();
}

#pragma once

#include "DaysKey.h"
#include "DueDays.h"

#include <map>
#include <optional>
#include <utility>

// On which days before a date actions were due. A day off where the date in
// UTC decides and the times of day of two actions differ.
class PastDays final
{
public:
    static constexpr int MOST_YEARS = 8; // between two dates that a calendar has in common: 29 February around 2100

    // dueDays: outlives the object. last: the latest date that counts.
    PastDays(DueDays& dueDays, const QDate& last)
        : m_dueDays(dueDays)
        , m_last(last)
    {
    }

    // The last day on which it was due; invalid where there was none.
    [[nodiscard]] QDate Latest(const Action& action) { return Latest(action, false); }

    // The same of those on which no clock was changed.
    [[nodiscard]] QDate LatestPlain(const Action& action) { return Latest(action, true); }

    // The very first one: invalid where there was none, and nothing where it is not known, or longer ago than can be
    // followed.
    [[nodiscard]] std::optional<QDate> Earliest(const Action& action);

    // Whether it is due on that day, in the past or not.
    [[nodiscard]] bool IsDue(const Action& action, const QDate& date) { return m_dueDays.IsDue(action, date); }

private:
    [[nodiscard]] QDate Latest(const Action& action, bool isPlain);

    DueDays& m_dueDays;
    const QDate m_last;
    std::map<std::pair<DaysKey, bool>, QDate> m_latest;
};

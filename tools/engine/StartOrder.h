#pragma once

#include "DueDays.h"

#include <QDate>

#include <cstdint>
#include <map>
#include <vector>

// The daemon starts what it has not started for longest first. So where several lines start in the same second, an
// earlier day on which only some of them started has decided on their order: this finds the latest such day.
class StartOrder final
{
public:
    // dueDays: outlives the object. last: the latest day that may have decided. first, until: the span for which the
    // order is wanted.
    StartOrder(DueDays& dueDays, const QDate& last, const QDate& first, const QDate& until);

    // How far back one has to go so that the order is known of all of them; invalid where the order of the lines, or
    // what the last recentDays days brought, decides.
    [[nodiscard]] QDate Needed(const std::vector<const Action*>& actions, int recentDays);

private:
    // A bit for each day.
    using Days = std::vector<std::uint64_t>;

    [[nodiscard]] QDate NeededOf(const std::vector<const Action*>& group, int recentDays);
    [[nodiscard]] Days DaysOf(const Action& action, const QDate& first, const QDate& last);
    [[nodiscard]] QDate LastApart(const Action& left, const Action& right);

    DueDays& m_dueDays;
    const QDate m_last;
    const QDate m_first;
    const QDate m_until;
};

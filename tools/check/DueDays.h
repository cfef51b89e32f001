#pragma once

#include "Action.h"

#include <QDate>

// On which days the daemon's own code finds actions due. Puts a virtual clock in the system's place for as long as it
// lives; only one may live. Dates are local, of the process's time zone.
class DueDays final
{
public:
    DueDays();
    ~DueDays();

    DueDays(const DueDays&) = delete;
    DueDays& operator=(const DueDays&) = delete;

    // When the daemon begins to look for it on that date, a few seconds ahead of its start time; one that does not
    // exist counts as noon.
    [[nodiscard]] bool IsDue(const Action& action, const QDate& date);

    // The first such date of those from first to last; invalid where there is none.
    [[nodiscard]] QDate FirstDue(const Action& action, const QDate& first, const QDate& last);

    // Whether at that time of that local date the date in UTC is another one.
    [[nodiscard]] bool IsUtcDateOther(const QTime& time, const QDate& date);

private:
    void Show(const QTime& time, const QDate& date);

    qint64 m_now_ms = 0;
};

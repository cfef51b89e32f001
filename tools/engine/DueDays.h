#pragma once

#include "Action.h"

#include <QDate>
#include <QHash>

// On which days the daemon's own code finds actions due. Puts a virtual clock in the system's place for as long as it
// lives; only one may live. Dates are local, of the process's time zone.
class DueDays final
{
public:
    DueDays();
    ~DueDays();

    DueDays(const DueDays&) = delete;
    DueDays& operator=(const DueDays&) = delete;

    // Whether the action is due on that date, at the moment when the daemon begins to look for it, a few seconds before
    // its start time. A start time that does not exist counts as noon.
    [[nodiscard]] bool IsDue(const Action& action, const QDate& date);

    // The first such date of those from first to last; invalid where there is none.
    [[nodiscard]] QDate FirstDue(const Action& action, const QDate& first, const QDate& last);

    // The last of them, or the last on which no clock is changed; invalid where there is none.
    [[nodiscard]] QDate LastDue(const Action& action, const QDate& first, const QDate& last, bool isPlain = false);

    // Whether no clock is changed on that date.
    [[nodiscard]] bool IsPlain(const QDate& date) { return DayOf(date).isPlain; }

    // Whether the date in UTC differs from the local date at that time.
    [[nodiscard]] bool IsUtcDateOther(const QTime& time, const QDate& date);

private:
    // A local date.
    struct Day
    {
        bool isPlain;    // no clock is changed: each time of day comes once
        qint64 begin_ms; // since 1970-01-01 00:00:00 UTC
    };

    void Show(const QTime& time, const QDate& date);
    [[nodiscard]] const Day& DayOf(const QDate& date);
    [[nodiscard]] static QDate UtcDate(const Day& day, const QTime& time);

    qint64 m_now_ms = 0;
    QHash<QDate, Day> m_days;
};

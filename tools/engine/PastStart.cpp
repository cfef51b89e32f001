#include "PastStart.h"

#include "Clock.h"
#include "ClockChange.h"
#include "base/Moment.h"
#include "starts/StartIndex.h"

using Moment::MS_PER_S;

PastStart PastStart::At(std::int64_t due_s, qint64 now_ms)
{
    const QDate date = StartIndex::DateOf(due_s);
    const QTime time = StartIndex::TimeOf(due_s);
    const qint64 straight_ms = (now_ms / MS_PER_S - Clock::Read().local_ms / MS_PER_S + due_s) * MS_PER_S;
    const bool isPlain = Moment::LocalDate(straight_ms) == date && Moment::LocalTime(straight_ms) == time;
    const qint64 moment_ms = isPlain ? straight_ms : Moment::FromLocal_ms(date, time);
    if (Moment::LocalTime(moment_ms) == time)
        return {moment_ms, false};
    const std::vector<ClockChange> changes = ClockChange::Between(moment_ms - LONGEST_DAY_MS, now_ms + 1);
    return changes.empty() ? PastStart{moment_ms, false} : PastStart{changes.back().moment_ms, true};
}

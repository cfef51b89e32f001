#include "MissedCause.h"

#include "Action.h"
#include "Passage.h"
#include "PassedStart.h"
#include "StartIndex.h"
#include "peers/PeerWaits.h"

namespace
{

constexpr std::int64_t MS_PER_S = StartIndex::MS_PER_S;

constexpr int LAST_UNSEEN_S = 2; // after midnight: what starts then is not seen ahead, but by luck

const QString LOADED = QStringLiteral("the schedule was loaded less than 3 s before");
const QString CLOCK_FORWARD = QStringLiteral("the clock was put forward");
const QString LOCAL_FORWARD = QStringLiteral("the clocks were put forward (summer time or another time zone)");
const QString STOOD_STILL = QStringLiteral("the process stood still");
const QString WAITED = QStringLiteral("the loop waited for %1");
const QString STILL_RUNS = QStringLiteral("it still plays or works from its last start");
const QString CANNOT_START = QStringLiteral("its time cannot start: the daemon looks ahead within one day only");
const QString LUCK = QStringLiteral("its time starts by luck only: it comes too soon after midnight");
const QString UTC_MIDNIGHT = QStringLiteral("its time comes too soon after midnight in UTC, when its spot date begins");

// Whether the start comes so soon after midnight that a look ahead rarely sees it.
bool IsRightAfterMidnight(QTime time)
{
    return QTime(0, 0).secsTo(time) <= LAST_UNSEEN_S;
}

// The same for midnight in UTC, at which a spot date begins.
bool IsRightAfterUtcMidnight(const Action& action, const QDate& date, QTime time)
{
    return action.HasSpotDate() && !IsRightAfterMidnight(time) &&
           Clock::UtcDateAt(date, time) != Clock::UtcDateAt(date, time.addSecs(-LAST_UNSEEN_S - 1));
}

// The first look after a load comes so long after it, or a little later on a busy machine.
bool WasLoadedJustBefore(std::int64_t due_s, const Passage& passage, std::int64_t loaded_ms)
{
    const bool isFirstLook = passage.from.local_ms == loaded_ms;
    const bool isInTime = passage.to.uptime_ms - passage.from.uptime_ms < Passage::LOOK_MS + Passage::LEAST_JUMP_MS;
    return isFirstLook && (due_s * MS_PER_S - loaded_ms <= Passage::LOOK_MS ||
                           (isInTime && passage.Jump_ms() < Passage::LEAST_JUMP_MS));
}

} // namespace

QString MissedCause::Loaded()
{
    return LOADED;
}

QString MissedCause::Of(const PassedStart& start, const Clock::Reading& now, std::int64_t loaded_ms)
{
    if (start.wasBusy)
        return STILL_RUNS;
    const QTime time = StartIndex::TimeOf(start.due_s);
    if (time == QTime(0, 0) && !start.action->ToleratesLateness())
        return CANNOT_START;
    const Passage passage{start.from, now};
    if (WasLoadedJustBefore(start.due_s, passage, loaded_ms))
        return LOADED;
    // When it was due, by the uptime.
    const std::int64_t due_ms = now.uptime_ms - (now.local_ms - start.due_s * MS_PER_S);
    const QString holder = PeerWaits::Throughout(due_ms, due_ms + Action::IN_TIME_S * MS_PER_S);
    if (!holder.isEmpty())
        return WAITED.arg(holder);
    if (passage.Jump_ms() > Passage::LEAST_JUMP_MS)
        return passage.ClockStep_ms() > Passage::LEAST_JUMP_MS ? CLOCK_FORWARD : LOCAL_FORWARD;
    const QString peer = PeerWaits::Longest(due_ms - Action::EARLY_S * MS_PER_S, now.uptime_ms);
    if (!peer.isEmpty())
        return WAITED.arg(peer);
    if (IsRightAfterMidnight(time))
        return LUCK;
    return IsRightAfterUtcMidnight(*start.action, StartIndex::DateOf(start.due_s), time) ? UTC_MIDNIGHT : STOOD_STILL;
}

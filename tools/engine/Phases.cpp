#include "Phases.h"

#include "Action.h"
#include "Event.h"
#include "RehearsalClock.h"
#include "Scheduler.h"
#include "base/Moment.h"

#include <QScopeGuard>

#include <algorithm>
#include <array>
#include <numeric>

namespace
{

using Moment::MS_PER_S;

static_assert(Event::PHASES_MS == Scheduler::FAR_INTERVAL_MS, "the far timer has that many phases");

constexpr qint64 SECONDS = Event::PHASES_MS / MS_PER_S;
constexpr qint64 LATE_S = SECONDS; // what may start late is found by the first far pass

bool IsFound(const Action& action)
{
    return action.IsDueToday() && (action.IsAhead() || action.IsLateStart());
}

} // namespace

int Phases::Of(const Action& action, RehearsalClock& clock, const Search& search)
{
    const qint64 now_ms = clock.Show(search.around_ms);
    const auto showAgain = qScopeGuard([&] { static_cast<void>(clock.Show(now_ms)); });
    // Zones and dates change at full seconds: what holds at the beginning of a second holds until its end.
    std::array<qint64, SECONDS> found_ms{};
    for (qint64 second = LATE_S - 1; second >= -Action::EARLY_S; --second)
    {
        const qint64 begin_ms = search.around_ms + second * MS_PER_S;
        const qint64 free_ms = std::min(begin_ms + MS_PER_S - search.free_ms, MS_PER_S);
        qint64& found = found_ms[static_cast<size_t>((second + SECONDS * Action::EARLY_S) % SECONDS)];
        if (free_ms <= found)
            continue;
        static_cast<void>(clock.Show(begin_ms));
        if (IsFound(action))
            found = free_ms;
    }
    return static_cast<int>(std::accumulate(found_ms.begin(), found_ms.end(), qint64{0}));
}

QString Phases::Text(int phases_ms)
{
    constexpr int TENTH_MS = 100;
    constexpr int SECOND_MS = static_cast<int>(MS_PER_S);
    const int tenths = std::clamp((phases_ms + TENTH_MS / 2) / TENTH_MS, 1, Event::PHASES_MS / TENTH_MS - 1);
    const int part_ms = tenths * TENTH_MS % SECOND_MS == 0 ? SECOND_MS : TENTH_MS;
    return QStringLiteral("in %1 of %2 cases, depending on when the daemon was started")
        .arg(tenths * TENTH_MS / part_ms)
        .arg(Event::PHASES_MS / part_ms);
}

#include "QuietMoment.h"

#include <algorithm>

namespace
{

// A time in which the schedule stays as it is.
struct Busy
{
    qint64 begin_ms;
    qint64 end_ms; // Event::OPEN: it has none
    const Event* event;

    [[nodiscard]] bool Covers(qint64 moment_ms) const
    {
        return begin_ms <= moment_ms && (end_ms == Event::OPEN || moment_ms < end_ms);
    }
};

// How long a message lasts only the player knows.
qint64 EndOf(const Event& event)
{
    return event.type == TASK_PLAY_MESSAGE ? std::max(event.end_ms, event.begin_ms + QuietMoment::MESSAGE_MS)
                                           : event.end_ms;
}

void AddStart(std::vector<Busy>& times, const Event& event)
{
    if (event.kind != EventKind::START && event.kind != EventKind::FOLLOWUP)
        return;
    // A message is asked for ahead of its time.
    times.push_back({event.moment_ms - QuietMoment::MARGIN_MS, event.Start_ms() + QuietMoment::MARGIN_MS, &event});
}

} // namespace

QuietMoment::Result QuietMoment::After(qint64 now_ms, qint64 until_ms, const std::vector<Event>& running,
                                       const std::vector<Event>& coming)
{
    std::vector<Busy> times;
    for (const Event& event : running)
    {
        AddStart(times, event);
        if (event.plays)
            times.push_back({event.begin_ms, EndOf(event), &event});
    }
    for (const Event& event : coming)
        AddStart(times, event);
    std::ranges::sort(times, {}, &Busy::begin_ms);

    Result result{now_ms, {}};
    for (const Busy& busy : times)
    {
        if (!busy.Covers(*result.moment_ms))
            continue;
        if (!result.first)
            result.first = Reason{*busy.event, busy.end_ms};
        if (busy.end_ms == Event::OPEN || busy.end_ms >= until_ms)
            return {{}, Reason{*busy.event, busy.end_ms}};
        result.moment_ms = busy.end_ms;
    }
    return result;
}

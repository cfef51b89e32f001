#include "Risks.h"

#include "Action.h"
#include "base/Moment.h"

using Moment::MS_PER_S;

void Risks::Mark(std::vector<Event>& events)
{
    int line = 0;
    qint64 until_ms = 0;
    for (Event& event : events)
    {
        if (event.kind != EventKind::START)
            continue;
        const qint64 last_ms = event.due_ms + (Action::IN_TIME_S + 1) * MS_PER_S;
        if (until_ms >= last_ms && event.delay_s == 0 && event.type != TASK_PLAY_PLAYLIST)
        {
            event.riskLine = line;
            event.riskUntil_ms = until_ms;
        }
        const qint64 free_ms = event.moment_ms + Request::Longest_ms(event.requests);
        if (free_ms > until_ms)
        {
            line = event.lineNumber;
            until_ms = free_ms;
        }
    }
}

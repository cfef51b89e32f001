#include "Risks.h"

#include "Action.h"
#include "base/Moment.h"

using Moment::MS_PER_S;

void Risks::Mark(Event& event)
{
    if (event.kind != EventKind::START)
        return;
    const qint64 last_ms = event.due_ms + (Action::IN_TIME_S + 1) * MS_PER_S;
    if (m_until_ms >= last_ms && event.delay_s == 0 && event.type != TASK_PLAY_PLAYLIST)
    {
        event.riskLine = m_line;
        event.riskUntil_ms = m_until_ms;
    }
    const qint64 free_ms = event.moment_ms + Request::Longest_ms(event.requests);
    if (free_ms > m_until_ms)
    {
        m_line = event.lineNumber;
        m_until_ms = free_ms;
    }
}

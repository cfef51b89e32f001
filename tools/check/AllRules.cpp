#include "Rules.h"

Findings Rules::FindAll(const Workspace& workspace, std::vector<ScheduleLine>& lines, const QDate& today)
{
    const std::vector<Entry> entries = Entry::Of(lines);
    Findings findings;
    FindRejected(entries, findings);
    FindOddText(lines, entries, findings);
    FindOddTimes(entries, findings);
    FindOddDates(entries, today, findings);
    FindOddParameters(entries, findings);
    FindOddPlaylists(workspace, entries, findings);
    FindOddPairs(entries, findings);
    FindBlocking(workspace, entries, today, findings);
    findings.Sort();
    return findings;
}

#include "Columns.h"
#include "Rules.h"

Findings Rules::FindAll(const Workspace& workspace, std::vector<ScheduleLine>& lines, const Options& options)
{
    const QDate& today = options.today;
    Findings findings;
    FindWrongForm(workspace, lines, findings);
    const std::vector<Entry> entries = Entry::Of(lines);
    FindRejected(entries, findings);
    FindOddText(lines, entries, findings);
    FindOddTimes(entries, findings);
    FindOddDates(entries, today, findings);
    FindOddParameters(entries, findings);
    FindOddPlaylists(workspace, entries, findings);
    if (options.media != nullptr)
        FindOddMedia(workspace, *options.media, entries, today, findings);
    FindOddNames(entries, findings);
    FindOddPairs(lines, entries, findings);
    FindTwoInASecond(entries, today, findings);
    FindOddPlaylistTimes(lines, entries, today, findings);
    FindStopsAtStart(entries, today, findings);
    FindCloseRestarts(entries, today, findings);
    if (options.isZoneKnown)
        FindChangedHours(entries, today, findings);
    FindEarlyLoads(lines, entries, today, findings);
    FindBlocking(workspace, entries, today, findings);
    FindAbsentPeers(workspace, entries, options.absentPeers, findings);
    Columns::Fill(lines, findings);
    findings.Sort();
    return findings;
}

#pragma once

#include "Entry.h"
#include "Findings.h"

#include <QDate>

class Workspace;

// What a check looks for. Each rule adds what it finds; none looks at what another has found. workspace: that of the
// entries.
namespace Rules
{

// The daemon's reasons for the lines that it leaves out.
void FindRejected(const std::vector<Entry>& entries, Findings& findings);

// Lines that are comments though they look like entries, too many fields, and characters that get lost.
void FindOddText(const std::vector<ScheduleLine>& lines, const std::vector<Entry>& entries, Findings& findings);

void FindOddTimes(const std::vector<Entry>& entries, Findings& findings);

// Days, spot dates and ranges, seen from today on.
void FindOddDates(const std::vector<Entry>& entries, const QDate& today, Findings& findings);

void FindOddParameters(const std::vector<Entry>& entries, Findings& findings);

// Lines of playlist files that give no track, or no duration. Each file is looked at once.
void FindOddPlaylists(const Workspace& workspace, const std::vector<Entry>& entries, Findings& findings);

// Stops without a start, starts without a stop, and lines that come twice.
void FindOddPairs(const std::vector<Entry>& entries, Findings& findings);

// What a load on another day starts at midnight of its day, in the year from today on.
void FindEarlyLoads(const std::vector<ScheduleLine>& lines, const QDate& today, Findings& findings);

// Entries that another one can delay, when a peer is slow, on a day of the year from today on.
void FindBlocking(const Workspace& workspace, const std::vector<Entry>& entries, const QDate& today,
                  Findings& findings);

} // namespace Rules

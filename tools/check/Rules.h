#pragma once

#include "Entry.h"
#include "Findings.h"

#include <QDate>

class MediaFolder;
class Workspace;

// What a check looks for. Each rule adds what it finds; none looks at what another has found. workspace: that of the
// entries.
namespace Rules
{

struct Options
{
    QDate today;
    bool isZoneKnown = false;     // the process's time zone is the device's
    MediaFolder* media = nullptr; // of the sounds; null: they are not looked at
    QStringList absentPeers = {}; // the last parts of the names of services that are not there
};

// What all of them find, sorted. lines: all of the schedule.
[[nodiscard]] Findings FindAll(const Workspace& workspace, std::vector<ScheduleLine>& lines, const Options& options);

// Lines, and whole files, whose form hides what they mean. What is told of a line is the cause of all that is wrong
// with it: it is closed, and from then on stands for the line that is meant, so that the other rules see what belongs
// to it.
void FindWrongForm(const Workspace& workspace, std::vector<ScheduleLine>& lines, Findings& findings);

// Why the daemon leaves out a line that it rejects.
[[nodiscard]] Finding RejectionOf(const Entry& entry);

// That of each such line.
void FindRejected(const std::vector<Entry>& entries, Findings& findings);

// Lines that are comments though they look like entries, too many fields, and characters that get lost.
void FindOddText(const std::vector<ScheduleLine>& lines, const std::vector<Entry>& entries, Findings& findings);

void FindOddTimes(const std::vector<Entry>& entries, Findings& findings);

// Days, spot dates and ranges, seen from today on.
void FindOddDates(const std::vector<Entry>& entries, const QDate& today, Findings& findings);

void FindOddParameters(const std::vector<Entry>& entries, Findings& findings);

// Lines of playlist files that give no track, or no duration. Each file is looked at once.
void FindOddPlaylists(const Workspace& workspace, const std::vector<Entry>& entries, Findings& findings);

// Names that are read otherwise than they look: a stream's whole address, a volume behind a ";".
void FindOddNames(const std::vector<Entry>& entries, Findings& findings);

// Stops without a start, starts without a stop, and lines that come twice. What a line that is not done was to begin or
// stop is not missed besides.
void FindOddPairs(const std::vector<ScheduleLine>& lines, const std::vector<Entry>& entries, Findings& findings);

// The rules of several lines look at the days of the year from today on.

// Messages of one second, and values of one second for one thing.
void FindTwoInASecond(const std::vector<Entry>& entries, const QDate& today, Findings& findings);

// Playlists that begin while another one plays, and stops that never come behind their playlist's start.
void FindOddPlaylistTimes(const std::vector<ScheduleLine>& lines, const std::vector<Entry>& entries, const QDate& today,
                          Findings& findings);

// Stops that end a message or a playlist as it begins, or when it has been asked for ahead of its start.
void FindStopsAtStart(const std::vector<Entry>& entries, const QDate& today, Findings& findings);

// Streams and playlists that still play from their last start until so shortly before the next one that only some of
// the far passes find it.
void FindCloseRestarts(const std::vector<Entry>& entries, const QDate& today, Findings& findings);

// Starts in hours that the process's time zone leaves out or has twice.
void FindChangedHours(const std::vector<Entry>& entries, const QDate& today, Findings& findings);

// Sounds that are not in the folder, that cannot be read, or last longer or shorter than a playlist tells; messages
// that begin while an earlier one plays.
void FindOddMedia(const Workspace& workspace, MediaFolder& folder, const std::vector<Entry>& entries,
                  const QDate& today, Findings& findings);

// What a load on another day starts at midnight of its day, in the year from today on.
void FindEarlyLoads(const std::vector<ScheduleLine>& lines, const std::vector<Entry>& entries, const QDate& today,
                    Findings& findings);

// Entries that another one can delay, when a peer is slow, on a day of the year from today on.
void FindBlocking(const Workspace& workspace, const std::vector<Entry>& entries, const QDate& today,
                  Findings& findings);

// Entries whose tasks ask a peer that is not there. absent: the last parts of those services' names.
void FindAbsentPeers(const Workspace& workspace, const std::vector<Entry>& entries, const QStringList& absent,
                     Findings& findings);

} // namespace Rules

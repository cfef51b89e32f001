#pragma once

#include "base/CommandLine.h"
#include "engine/EventLog.h"
#include "engine/Rehearsal.h"
#include "engine/RehearsalResult.h"

#include <functional>
#include <optional>
#include <vector>

class Workspace;

// What follows a rehearsal; each may be empty.
struct RehearsalFollowers
{
    // Called for each event as it comes about, also before the span of interest: see EventLog.
    EventLog::Noted noted = {};

    // Takes the events instead of the result, as soon as nothing can change them any more.
    EventQueue::Take take = {};

    // Called now and then: whether what has been noted is enough. All events before reached_ms have been.
    std::function<bool(qint64 reached_ms)> isEnough = {};

    // Called for each request, those of the run-up included.
    Rehearsal::Requested requested = {};

    // Called once the schedule has been read, before the rehearsal: it may read more of the workspace.
    std::function<void(const Workspace& workspace)> read = {};
};

// A rehearsal as the commands that have one ask for it: their common options, its span, and its result.
class RehearsalRun final
{
public:
    // Adds --playlists and --tz.
    static void AddPlaceOptions(CommandLine& line);

    // Adds --from and --days as well. days: how many, unless told.
    static void AddSpanOptions(CommandLine& line, int days);

    // Reports the lines that the daemon rejects on standard error, with the file's name; returns their number. where:
    // begins what is said of each, as "in the old schedule ".
    static int TellRejected(const QString& file, std::vector<ScheduleLine>& lines, const QString& where = {});

    // Sets the time zone that line asks for, if any.
    static void SetTimeZone(const CommandLine& line);
    [[nodiscard]] static bool HasTimeZone(const CommandLine& line);

    // Rehearses file. start_ms: the daemon loads it then; none: it has been running for long, see RunUp. from_ms,
    // until_ms: the span of interest, which ends earlier where a follower says so. Shows progress. Rejected lines are
    // told on standard error, with file and line. playlists: the folder of the playlists, if not the one that line
    // names. where: see TellRejected. Throws ToolError when file cannot be read.
    RehearsalRun(const CommandLine& line, const QString& file, std::optional<qint64> start_ms, qint64 from_ms,
                 qint64 until_ms, const RehearsalFollowers& followers = {}, const QString& playlists = {},
                 const QString& where = {});

    // The span that line asks for, by default from the beginning of today. days: replaces the option's default
    // number. Throws ToolError on a text that is not a moment.
    [[nodiscard]] static qint64 From_ms(const CommandLine& line);
    [[nodiscard]] static qint64 Until_ms(const CommandLine& line, qint64 from_ms, std::optional<int> days = {});

    [[nodiscard]] const RehearsalResult& Result() const { return m_result; }

    // Tells on standard error up to where it has run, if the user has ended it.
    void TellCut() const;

    // The exit status of a command that has no more to say: of the lines, and of an interruption.
    [[nodiscard]] int Status() const;

private:
    void Rehearse(const Workspace& workspace, const Rehearsal::Plan& plan, const RehearsalFollowers& followers);

    RehearsalResult m_result;
};

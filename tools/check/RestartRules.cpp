#include "PlaylistLength.h"
#include "Rules.h"
#include "Startable.h"

#include "base/Moment.h"
#include "engine/Phases.h"

#include <QHash>

#include <algorithm>
#include <limits>
#include <optional>
#include <vector>

using namespace ScheduleFields;

namespace
{

using Moment::DAY_S;

using Phases::PERIOD_S;

// A stop takes a moment besides.
constexpr int BEHIND_STOP_S = PERIOD_S + 1;

constexpr qint64 ENDLESS = std::numeric_limits<qint64>::max() / 2;

// What stops an entry on one day.
struct Stops
{
    int first = std::numeric_limits<int>::max(); // second of the day
    int firstLine = 0;
    int last = -1;
};

using StopDays = std::vector<Stops>;
using StopsByIdentifier = QHash<QString, StopDays>;

// A day on which an entry ends too shortly before its next start.
struct Close
{
    size_t day;
    int end;      // second of the day
    int stopLine; // 0: it ends by itself

    [[nodiscard]] int Needed_s() const { return stopLine == 0 ? PERIOD_S : BEHIND_STOP_S; }
};

void Add(const Stops& stop, Stops& stops)
{
    if (stop.first < stops.first)
    {
        stops.first = stop.first;
        stops.firstLine = stop.firstLine;
    }
    stops.last = std::max(stops.last, stop.last);
}

StopsByIdentifier StopsOf(TaskType type, const std::vector<Entry>& entries, YearDays& days)
{
    StopsByIdentifier all;
    for (const Entry& entry : entries)
    {
        if (!Startable::Is(entry) || !entry.Is(type))
            continue;
        const int second = Startable::Second(entry);
        const YearDays::Bits bits = days.Of(*entry.GetAction());
        StopDays& stops = all[entry.GetAction()->m_task->m_identifier];
        stops.resize(YearDays::DAYS);
        for (size_t day = 0; day < stops.size(); ++day)
        {
            if (bits[day])
                Add({second, entry.line.number, second}, stops[day]);
        }
    }
    return all;
}

// Those of whatever plays are for each identifier.
StopDays StopsFor(const QString& identifier, const StopsByIdentifier& all)
{
    StopDays stops = all.value({});
    const StopDays own = all.value(identifier);
    stops.resize(YearDays::DAYS);
    for (size_t day = 0; day < own.size(); ++day)
        Add(own[day], stops[day]);
    return stops;
}

// An entry whose restart may be close.
struct Play : Startable
{
    qint64 length_s;
    YearDays::Bits freed; // days on which it is told to have ended before
};

// The first such day. byStop: also where it is a stop that ends it.
std::optional<Close> FirstClose(const Play& play, const StopDays& stops, bool byStop)
{
    qint64 end_s = 0; // of what plays, from the day's midnight on; negative or 0: nothing plays
    for (size_t day = 0; day < YearDays::DAYS; ++day, end_s -= end_s < ENDLESS / 2 ? DAY_S : 0)
    {
        const Stops& stop = stops[day];
        const qint64 free_s = std::min<qint64>(end_s, stop.first);
        const bool playsOn = end_s > 0 && free_s >= play.second;
        const Close close{day, static_cast<int>(std::min<qint64>(free_s, play.second)),
                          free_s == stop.first ? stop.firstLine : 0};
        const bool isTold = !play.freed[day] && (byStop || close.stopLine == 0);
        if (play.days[day] && end_s > 0 && !playsOn && isTold && play.second - close.end < close.Needed_s())
            return close;
        if (play.days[day] && !playsOn)
            end_s = std::min(play.second + play.length_s, ENDLESS);
        // What is stopped later on this day is over at its end.
        const bool isStopped = play.days[day] ? stop.last >= play.second : stop.last >= 0;
        if (isStopped)
            end_s = 0;
    }
    return {};
}

QString Advice(const Startable& play, const Close& close)
{
    const int short_s = close.Needed_s() - (play.second - close.end);
    // It ends as much later as it starts later.
    if (close.stopLine == 0)
        return QStringLiteral("shorten the playlist by %1 s or more").arg(short_s);
    if (play.second + short_s < DAY_S)
        return QStringLiteral("write %1 or later").arg(Startable::TimeText(play.second + short_s));
    return QStringLiteral("stop it at %1 or earlier").arg(Startable::TimeText(close.end - short_s));
}

void Tell(const Startable& play, const Close& close, const QDate& today, Findings& findings)
{
    const int ahead_s = play.second - close.end;
    const QString stop = close.stopLine == 0 ? QString() : QStringLiteral("line %1 stops it ").arg(close.stopLine);
    const QString day = Moment::DateText(today.addDays(static_cast<qint64>(close.day)));
    findings.Add(
        {play.entry->line.number, FindingKind::CLOSE_RESTART, Entry::FieldName(FIELD_START_TIME),
         QStringLiteral("still plays from its last start until %1%2 s before this one, first on %3: then it "
                        "starts %4")
             .arg(stop, QString::number(ahead_s), day, Phases::Text(ahead_s * static_cast<int>(Moment::MS_PER_S))),
         Advice(play, close)});
}

// kind: of what plays, and may still do so a day later.
void LookAt(TaskType kind, TaskType stop, const std::vector<Entry>& entries, const QDate& today, Findings& findings)
{
    const bool isPlaylist = kind == TASK_PLAY_PLAYLIST;
    YearDays days(today);
    std::vector<Play> plays;
    YearDays::Bits once;  // on which one of all those that start does so
    YearDays::Bits twice; // and another one
    for (const Entry& entry : entries)
    {
        if (!Startable::Is(entry) || !entry.Is(kind))
            continue;
        const YearDays::Bits bits = days.Of(*entry.GetAction());
        twice |= once & bits;
        once |= bits;
        if (!isPlaylist || (PlaylistLength::IsKnown(entry) && PlaylistLength::Of_s(entry) > DAY_S - PERIOD_S))
            plays.push_back({{&entry, Startable::Second(entry), bits},
                             isPlaylist ? PlaylistLength::Of_s(entry) : ENDLESS,
                             YearDays::Bits()});
    }
    if (plays.empty())
        return;
    const StopsByIdentifier stops = StopsOf(stop, entries, days);
    for (Play& play : plays)
    {
        // The daemon takes the end of any playlist for that of each one that plays.
        const YearDays::Bits others = twice | (once & ~play.days);
        if (isPlaylist)
            play.freed = others | (others << 1);
        // A stop so close to a playlist's start has a finding of its own.
        const StopDays own = StopsFor(play.entry->GetAction()->m_task->m_identifier, stops);
        if (const std::optional<Close> close = FirstClose(play, own, !isPlaylist))
            Tell(play, *close, today, findings);
    }
}

} // namespace

void Rules::FindCloseRestarts(const std::vector<Entry>& entries, const QDate& today, Findings& findings)
{
    LookAt(TASK_PLAY_STREAM, TASK_STOP_STREAM, entries, today, findings);
    LookAt(TASK_PLAY_PLAYLIST, TASK_STOP_PLAYLIST, entries, today, findings);
}

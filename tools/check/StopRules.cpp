#include "PlaylistLength.h"
#include "Rules.h"
#include "Startable.h"

#include "base/Moment.h"
#include "engine/Phases.h"

#include <algorithm>
#include <array>

using namespace ScheduleFields;

namespace
{

using Moment::DAY_S;

// What is stopped that soon behind its start can hardly have been meant to play.
constexpr int SHORTEST_S = 10;

using Phases::PERIOD_S;

struct Row
{
    TaskType stop;
    TaskType play;
    int ahead_s;  // how far ahead of its start the play is asked for
    int before_s; // a stop that comes so long before the start hinders it in no way
};

constexpr std::array TABLE{
    Row{TASK_STOP_PLAYLIST, TASK_PLAY_PLAYLIST, Action::PREPARED_AHEAD_S, Action::PREPARED_AHEAD_S + 1},
    Row{TASK_STOP_MESSAGE, TASK_PLAY_MESSAGE, Action::PREPARED_AHEAD_S, Action::PREPARED_AHEAD_S + 1},
    // A stream that still plays has to be found again by a far pass.
    Row{TASK_STOP_STREAM, TASK_PLAY_STREAM, 0, PERIOD_S + 1},
    Row{TASK_STOP_RADIO_FM, TASK_PLAY_RADIO_FM, 0, 1},
};

struct Play : Startable
{
    qint64 length_s; // a day where it is not known
};

// What a stop does to a play.
struct Hit
{
    const Play* play = nullptr; // null: nothing
    qint64 behind_s = 0;        // from the play's start to the stop
    YearDays::Bits days = {};   // of the play's start
};

qint64 Length_s(const Entry& play)
{
    return play.Is(TASK_PLAY_PLAYLIST) && PlaylistLength::IsKnown(play) ? PlaylistLength::Of_s(play) : DAY_S;
}

const QString& Identifier(const Startable& start)
{
    return start.entry->GetAction()->m_task->m_identifier;
}

// A stop without an identifier is for whatever plays.
bool IsFor(const Startable& stop, const Play& play)
{
    return Identifier(stop).isEmpty() || Identifier(stop) == Identifier(play);
}

// Whether a stop that comes so much behind the start ends what has been asked for, or has just begun.
bool IsAtStart(const Row& row, qint64 behind_s, const Play& play)
{
    // What is not asked for ahead and stopped in its second has two values there, which is told elsewhere.
    return behind_s > -row.ahead_s && behind_s <= SHORTEST_S && behind_s < play.length_s;
}

// plays: sorted by their seconds.
Hit FindHit(const Row& row, const Startable& stop, const std::vector<Play>& plays)
{
    // What begins before midnight may be stopped behind it. Nothing is asked for before the midnight of its day.
    for (const int daysLater : {0, 1})
    {
        const qint64 second = stop.second + daysLater * DAY_S;
        const YearDays::Bits days = stop.days >> static_cast<size_t>(daysLater);
        auto play = std::ranges::lower_bound(plays, second - SHORTEST_S, {}, &Play::second);
        for (; play != plays.end() && play->second < second + std::max(row.ahead_s, 1); ++play)
        {
            const Hit hit{&*play, second - play->second, days & play->days};
            if (IsAtStart(row, hit.behind_s, *play) && IsFor(stop, *play) && hit.days.any())
                return hit;
        }
    }
    return {};
}

// Until when a stop comes before the play; empty where that is before midnight.
QString Before(const Row& row, const Play& play)
{
    const int second = play.second - row.before_s;
    return second < 0 ? QString()
                      : QStringLiteral("%1 or earlier to stop what plays before, or ").arg(Startable::TimeText(second));
}

// What comes of a play that is asked for, and stopped so long before its start.
QString AskedAgain(qint64 left_s)
{
    if (left_s <= 0)
        return {};
    return QStringLiteral(", and again behind the stop") +
           (left_s > PERIOD_S ? QString() : u' ' + Phases::Text(static_cast<int>(left_s * Moment::MS_PER_S)));
}

void Tell(const Row& row, const Startable& stop, const Hit& hit, const QDate& today, Findings& findings)
{
    const Play& play = *hit.play;
    const QString line = QString::number(play.entry->line.number);
    const QString start = Startable::TimeText(play.second);
    const QString day = Startable::FirstDay(hit.days, today);
    const QString text = hit.behind_s > 0
                             ? QStringLiteral("stops what line %1 plays at %2 after %3 s, first on %4")
                                   .arg(line, start, QString::number(hit.behind_s), day)
                             : QStringLiteral("stops what line %1 plays at %2 before it is heard, first on %3: the "
                                              "daemon asks for it up to %4 s ahead%5")
                                   .arg(line, start, day, QString::number(row.ahead_s), AskedAgain(-hit.behind_s));
    findings.Add(
        {stop.entry->line.number, FindingKind::STOPPED_AT_START, Entry::FieldName(FIELD_START_TIME), text,
         QStringLiteral("write %1a time at which line %2 has played for longer").arg(Before(row, play), line)});
}

void LookAt(const Row& row, const std::vector<Entry>& entries, const QDate& today, Findings& findings)
{
    std::vector<Startable> stops;
    std::vector<Play> plays;
    YearDays days(today);
    for (const Entry& entry : entries)
    {
        if (!Startable::Is(entry) || (!entry.Is(row.stop) && !entry.Is(row.play)))
            continue;
        const Startable start{&entry, Startable::Second(entry), days.Of(*entry.GetAction())};
        if (entry.Is(row.stop))
            stops.push_back(start);
        else
            plays.push_back({start, Length_s(entry)});
    }
    std::ranges::stable_sort(plays, {}, &Play::second);
    for (const Startable& stop : stops)
    {
        if (const Hit hit = FindHit(row, stop, plays); hit.play != nullptr)
            Tell(row, stop, hit, today, findings);
    }
}

} // namespace

void Rules::FindStopsAtStart(const std::vector<Entry>& entries, const QDate& today, Findings& findings)
{
    for (const Row& row : TABLE)
        LookAt(row, entries, today, findings);
}

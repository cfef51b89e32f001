#include "LeftOut.h"
#include "PlaylistLength.h"
#include "Rules.h"
#include "Span.h"

#include "base/Moment.h"

#include <QHash>
#include <QSet>

#include <algorithm>
#include <map>

using namespace ScheduleFields;

namespace
{

using Moment::DAY_S;

const QString& Identifier(const Startable& start)
{
    return start.entry->GetAction()->m_task->m_identifier;
}

QString Name(const Startable& playlist)
{
    return playlist.entry->parameters.value(0);
}

// The playlists of a schedule, and what stops them.
class Playlists final
{
public:
    Playlists(const std::vector<Entry>& entries, const LeftOut& leftOut, const QDate& today)
        : m_today(today)
        , m_leftOut(leftOut)
        , m_isAStopUnmatched(HasUnmatchedStop(entries))
    {
        YearDays days(today);
        for (const Entry& entry : entries)
        {
            if (!entry.Is(TASK_PLAY_PLAYLIST) && !entry.Is(TASK_STOP_PLAYLIST))
                continue;
            if (!Startable::Is(entry))
            {
                m_oddStops.insert(entry.Is(TASK_STOP_PLAYLIST) ? entry.GetAction()->m_task->m_identifier : QString());
                continue;
            }
            const Startable start{&entry, Startable::Second(entry), days.Of(*entry.GetAction())};
            // What never comes is told elsewhere.
            if (start.days.none())
                continue;
            if (entry.Is(TASK_PLAY_PLAYLIST))
                m_spans.push_back({start, PlaylistLength::Of_s(entry)});
            else
            {
                const StopKey key(Identifier(start), start.second);
                m_stops.emplace(key, start);
                m_stopDays[key] |= start.days;
            }
        }
    }

    void FindEarlyStops(Findings& findings)
    {
        QHash<QString, std::vector<const Span*>> plays;
        for (const Span& play : m_spans)
            plays[Identifier(play)].push_back(&play);
        for (const auto& [key, stop] : m_stops)
        {
            if (!key.first.isEmpty())
                LookAt(stop, plays.value(key.first), findings);
        }
    }

    void FindMeetings(Findings& findings)
    {
        Span::ForMeetings(m_spans, [&](const Span::Meeting& meeting) {
            const YearDays::Bits days = meeting.days & ~Stopped(meeting);
            const bool isMistaken =
                days.any() && !IsStopTold(meeting.first) && meeting.first.entry->fields != meeting.second.entry->fields;
            if (isMistaken)
                Tell(meeting, days, findings);
            return isMistaken;
        });
    }

private:
    using StopKey = std::pair<QString, int>; // the identifier, and the second of the day

    // plays: those with the identifier of the stop.
    void LookAt(const Startable& stop, const std::vector<const Span*>& plays, Findings& findings)
    {
        if (plays.empty() || std::ranges::any_of(plays, [&](const Span* play) { return Hits(stop, *play); }))
            return;
        // One that comes on a day of the stop tells more.
        const auto same = std::ranges::find_if(plays, [&](const Span* play) { return (play->days & stop.days).any(); });
        const Span* const missed = same != plays.end() ? *same : plays.front();
        for (const Span* play : plays)
            m_stoppedTooEarly.insert(play->entry->line.number);
        const QString line = QString::number(missed->entry->line.number);
        if ((missed->days & stop.days).any())
            findings.Add({stop.entry->line.number, FindingKind::EARLY_STOP, Entry::FieldName(FIELD_START_TIME),
                          QStringLiteral("comes before line %1 starts the playlist at %2, and stops nothing")
                              .arg(line, Startable::TimeText(missed->second)),
                          QStringLiteral("write a time after %1").arg(Startable::TimeText(missed->second))});
        else
            findings.Add({stop.entry->line.number, FindingKind::EARLY_STOP, Entry::FieldName(FIELD_DAYS),
                          QStringLiteral("comes on no day on which line %1 starts the playlist").arg(line),
                          QStringLiteral("write the days of line %1").arg(line)});
    }

    // Whether there is a day on which the stop comes after the playlist was asked for, or while it plays past midnight.
    static bool Hits(const Startable& stop, const Span& play)
    {
        if (stop.second > play.second - Action::PREPARED_AHEAD_S && (stop.days & play.days).any())
            return true;
        const bool isPlaying =
            !PlaylistLength::IsKnown(*play.entry) || stop.second + DAY_S < play.second + play.length_s;
        return isPlaying && ((stop.days >> 1) & play.days).any();
    }

    // Whether there is a stop for something that no playlist is called.
    static bool HasUnmatchedStop(const std::vector<Entry>& entries)
    {
        QSet<QString> played{{}};
        for (const Entry& entry : entries)
        {
            if (entry.Is(TASK_PLAY_PLAYLIST))
                played.insert(entry.GetAction()->m_task->m_identifier);
        }
        return std::ranges::any_of(entries, [&](const Entry& entry) {
            return entry.Is(TASK_STOP_PLAYLIST) && !played.contains(entry.GetAction()->m_task->m_identifier);
        });
    }

    // Whether its stop is told to come too early, not to be done, or to be for another one.
    [[nodiscard]] bool IsStopTold(const Span& play) const
    {
        const QString& identifier = Identifier(play);
        if (identifier.isEmpty())
            return false;
        const auto stop = m_stops.lower_bound({identifier, 0});
        const bool hasStop = stop != m_stops.end() && stop->first.first == identifier;
        return hasStop ? m_stoppedTooEarly.contains(play.entry->line.number)
                       : m_isAStopUnmatched || m_oddStops.contains(identifier) || m_leftOut.Names(identifier);
    }

    // The days on which something has stopped the first of the two, be it before it was heard, before the second
    // begins.
    [[nodiscard]] YearDays::Bits Stopped(const Span::Meeting& meeting) const
    {
        YearDays::Bits days;
        const qint64 end_s = qint64{meeting.first.second} + meeting.ahead_s;
        const auto add = [&](const QString& identifier) {
            const auto addThose = [&](qint64 after_s, qint64 until_s, size_t daysLater) {
                const auto end = m_stopDays.upper_bound({identifier, static_cast<int>(until_s)});
                for (auto stop = m_stopDays.upper_bound({identifier, static_cast<int>(after_s)}); stop != end; ++stop)
                    days |= stop->second >> daysLater;
            };
            addThose(qint64{meeting.first.second} - Action::PREPARED_AHEAD_S, end_s, 0);
            if (end_s >= DAY_S)
                addThose(0, end_s - DAY_S, 1);
        };
        add(Identifier(meeting.first));
        // A stop without an identifier is for whatever plays.
        if (!Identifier(meeting.first).isEmpty())
            add({});
        return days;
    }

    void Tell(const Span::Meeting& meeting, const YearDays::Bits& days, Findings& findings) const
    {
        const QString first = QString::number(meeting.first.entry->line.number);
        const auto end = static_cast<int>((meeting.first.second + meeting.first.length_s) % DAY_S);
        const QString endText = Startable::TimeText(end);
        findings.Add(
            {meeting.second.entry->line.number, FindingKind::TWO_PLAYLISTS, Entry::FieldName(FIELD_START_TIME),
             QStringLiteral(
                 "playlist \"%1\" of line %2 plays until %3, first on %4: the daemon asks for both, and takes "
                 "the end of either for the end of both")
                 .arg(Name(meeting.first), first, endText, Startable::FirstDay(days, m_today)),
             QStringLiteral("write a time from %1 on, or stop line %2 before this one by a StopPlaylist with its "
                            "identifier")
                 .arg(endText, first)});
    }

    const QDate m_today;
    const LeftOut& m_leftOut;
    const bool m_isAStopUnmatched;
    std::vector<Span> m_spans;
    std::multimap<StopKey, Startable> m_stops;
    std::map<StopKey, YearDays::Bits> m_stopDays; // on which any stop comes: looked at for each pair of playlists
    QSet<QString> m_oddStops;                     // the identifiers of those whose time is told to be none
    QSet<int> m_stoppedTooEarly;                  // the lines of playlists
};

} // namespace

void Rules::FindOddPlaylistTimes(const std::vector<ScheduleLine>& lines, const std::vector<Entry>& entries,
                                 const QDate& today, Findings& findings)
{
    const LeftOut leftOut(lines, entries);
    Playlists playlists(entries, leftOut, today);
    playlists.FindEarlyStops(findings);
    playlists.FindMeetings(findings);
}

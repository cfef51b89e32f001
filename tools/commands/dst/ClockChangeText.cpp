#include "ClockChangeText.h"

#include "Action.h"
#include "base/Moment.h"
#include "engine/Phases.h"

#include <QStringList>

#include <algorithm>
#include <cstdlib>
#include <map>

namespace
{

using Moment::MS_PER_S;

using EventsOfLines = std::map<int, std::vector<Event>>;

// Ahead of a start and behind it, while an action may be watched, prepared or still started.
constexpr qint64 MARGIN_MS = (Action::EARLY_S + Action::IN_TIME_S + 1) * MS_PER_S;

constexpr qsizetype TIME_BEGIN = 11; // in an ISO moment, which tells the offset as well

bool IsOutcome(const Event& event)
{
    const bool isStart = event.kind == EventKind::START && !event.isForced;
    return isStart || event.kind == EventKind::MISSED || event.kind == EventKind::LOST;
}

// What the clock would have shown at the change.
QTime TimeBefore(const ClockChange& change)
{
    return Moment::LocalTime(change.moment_ms).addMSecs(static_cast<int>(-change.shift_s * MS_PER_S));
}

// Whether the clocks are put forward over that time of day.
bool IsLeftOut(QTime time, const ClockChange& change)
{
    const int behind_s = TimeBefore(change).secsTo(time);
    return time.isValid() && (behind_s < 0 ? behind_s + Moment::DAY_S : behind_s) < change.shift_s;
}

// Where the clocks are put back the hour before the change comes again behind it. What is asked for ahead may begin in
// the hour that is left out.
bool IsConcerned(const Event& event, const ClockChange& change, const LinePhrases& phrases)
{
    if (IsLeftOut(phrases.StartTime(event.lineNumber), change))
        return true;
    const qint64 repeated_ms = std::max<qint64>(-change.shift_s, 0) * MS_PER_S;
    const bool isInside =
        event.due_ms >= change.moment_ms - repeated_ms && event.due_ms < change.moment_ms + repeated_ms;
    return isInside || event.isRepeated || event.IsByChance() || event.delay_s > 0 || event.kind != EventKind::START;
}

EventsOfLines Concerned(const ClockChange& change, const std::vector<Event>& events, const LinePhrases& phrases)
{
    const qint64 reach_ms = std::max<qint64>(-change.shift_s, 0) * MS_PER_S + MARGIN_MS;
    EventsOfLines lines;
    for (const Event& event : events)
    {
        if (IsOutcome(event) && std::abs(event.moment_ms - change.moment_ms) < reach_ms)
            lines[event.lineNumber].push_back(event);
    }
    std::erase_if(lines, [&](const auto& line) {
        return std::ranges::none_of(line.second,
                                    [&](const Event& event) { return IsConcerned(event, change, phrases); });
    });
    return lines;
}

QString TimeWithOffset(const Event& event)
{
    return Moment::IsoText(event.moment_ms).mid(TIME_BEGIN);
}

// leftOut: the start time, where the clocks are put forward over it; else an invalid one.
QString Outcome(const std::vector<Event>& events, QTime leftOut)
{
    QStringList starts;
    QString reason;
    QString chance;
    bool isLate = false;
    for (const Event& event : events)
    {
        if (event.kind == EventKind::START && event.IsByChance())
            chance =
                (event.isRepeated ? QStringLiteral("; the second time by chance, ") : QStringLiteral("; by chance, ")) +
                Phases::Text(event.phases_ms);
        if (event.kind != EventKind::START)
            reason = event.reason;
        else
            starts.append(TimeWithOffset(event));
        isLate = isLate || event.delay_s > 0;
    }
    if (starts.isEmpty())
        return QStringLiteral("does not start: ") + reason;
    if (starts.size() > 1)
        return QStringLiteral("is asked for %1: at %2")
                   .arg(starts.size() == 2 ? QStringLiteral("twice") : QStringLiteral("%1 times").arg(starts.size()),
                        starts.join(QStringLiteral(" and "))) +
               chance;
    const QString once = isLate ? QStringLiteral("is asked for late: at ") : QStringLiteral("is asked for once: at ");
    const bool isAhead = leftOut.isValid() && !isLate;
    return once + starts.first() + chance +
           (isAhead ? QStringLiteral("; it is to begin at %1, which does not come")
                          .arg(leftOut.toString(QStringLiteral("HH:mm:ss")))
                    : QString()) +
           (reason.isEmpty() || isLate ? QString() : QStringLiteral("; missed: ") + reason);
}

} // namespace

QString ClockChangeText::Of(const ClockChange& change, const std::vector<Event>& events, LinePhrases& phrases)
{
    QString text;
    for (const auto& [number, outcomes] : Concerned(change, events, phrases))
    {
        const QTime start = phrases.StartTime(number);
        text += QStringLiteral("  %1: %2\n")
                    .arg(phrases.Of(number), Outcome(outcomes, IsLeftOut(start, change) ? start : QTime()));
    }
    if (text.isEmpty())
        return {};
    return QStringLiteral("%1: at %2 the clocks are put %3 to %4\n")
               .arg(Moment::DateText(Moment::LocalDate(change.moment_ms - MS_PER_S)),
                    TimeBefore(change).toString(QStringLiteral("HH:mm:ss")),
                    change.shift_s > 0 ? QStringLiteral("forward") : QStringLiteral("back"),
                    Moment::TimeText(change.moment_ms)) +
           text;
}

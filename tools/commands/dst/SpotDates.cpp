#include "SpotDates.h"

#include "base/Moment.h"
#include "words/DaysText.h"

#include <QTimeZone>

#include <algorithm>
#include <map>

namespace
{

constexpr int ANY = -1;

bool Names(int spot, int value)
{
    return spot == ANY || spot == value;
}

// Whether that date is what the line's author has written; on which local date it starts is for the daemon to tell.
bool IsWritten(const Action& action, const QDate& date)
{
    return Names(action.m_day, date.day()) && Names(action.m_month, date.month()) && Names(action.m_year, date.year());
}

bool HasSpot(const ScheduleLine& line)
{
    return line.action != nullptr && line.action->HasSpotDate();
}

bool IsElsewhere(const Event& event, const Action& action)
{
    const QDate date = Moment::LocalDate(event.due_ms);
    const bool isWeekDay = (action.m_dow & DaysText::WeekDayBit(date)) != 0;
    return event.kind == EventKind::START && !event.isForced && !isWeekDay && !IsWritten(action, date);
}

} // namespace

std::vector<SpotDates::Span> SpotDates::Spans(const std::vector<ScheduleLine>& lines, const QDate& first,
                                              const QDate& last)
{
    std::vector<Span> spans;
    for (QDate date = first; date <= last; date = date.addDays(1))
    {
        const bool isNamed = std::ranges::any_of(
            lines, [&](const ScheduleLine& line) { return HasSpot(line) && IsWritten(*line.action, date); });
        if (!isNamed)
            continue;
        const Span span{Moment::FromLocal_ms(date.addDays(-1), QTime(0, 0)),
                        Moment::FromLocal_ms(date.addDays(2), QTime(0, 0))};
        if (!spans.empty() && spans.back().end_ms >= span.begin_ms)
            spans.back().end_ms = span.end_ms;
        else
            spans.push_back(span);
    }
    return spans;
}

QString SpotDates::Text(const std::vector<ScheduleLine>& lines, const std::vector<Event>& events, LinePhrases& phrases)
{
    std::map<int, std::vector<qint64>> starts;
    for (const Event& event : events)
    {
        const ScheduleLine& line = lines.at(static_cast<size_t>(event.lineNumber) - 1);
        if (HasSpot(line) && IsElsewhere(event, *line.action))
            starts[event.lineNumber].push_back(event.due_ms);
    }
    QString text;
    for (const auto& [number, moments] : starts)
    {
        const QDate utc = QDateTime::fromMSecsSinceEpoch(moments.front(), QTimeZone::utc()).date();
        text +=
            QStringLiteral("  %1: starts on %2, when it is %3 in UTC")
                .arg(phrases.Of(number), Moment::DateText(Moment::LocalDate(moments.front())), Moment::DateText(utc));
        if (moments.size() > 1)
            text += (moments.size() == 2 ? QStringLiteral(", and so on 1 more date")
                                         : QStringLiteral(", and so on %1 more dates").arg(moments.size() - 1));
        text += u'\n';
    }
    return text.isEmpty() ? text : QStringLiteral("Spot dates that come on another day, as they go by UTC:\n") + text;
}

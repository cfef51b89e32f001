#include "EventDetails.h"

#include "EventHtml.h"
#include "Html.h"
#include "LineHtml.h"
#include "WeekLayout.h"
#include "base/Moment.h"
#include "engine/RehearsalResult.h"
#include "words/EventText.h"

namespace
{

QString Time(qint64 moment_ms)
{
    return Html::Element("time", {}, Moment::TimeText(moment_ms));
}

// With the date, where it is not that of beside_ms.
QString DayAndTime(qint64 moment_ms, qint64 beside_ms)
{
    const QDate date = Moment::LocalDate(moment_ms);
    const QString time = EventHtml::TimeText(moment_ms);
    return date == Moment::LocalDate(beside_ms) ? time : EventHtml::DateText(date) + u' ' + time;
}

// When what goes on at the end of the rehearsal has played its last track; Event::OPEN where nobody knows.
qint64 LastEnd_ms(const RehearsalResult& run, const Event& event)
{
    const qint64 end_ms = event.tracks.isEmpty() ? Event::OPEN : event.tracks.last().end_ms;
    return end_ms > run.end_ms ? end_ms : Event::OPEN;
}

QString Why(const RehearsalResult& run, const Event& event)
{
    QString text;
    for (const QString& mark : EventHtml::Marks(run, event))
        text += Html::Element("span", QStringLiteral("badge ") + mark, mark) + u' ';
    text += Html::Attribute(event.reason);
    return text.isEmpty() ? QString() : Html::Element("p", QStringLiteral("why"), text);
}

QString Span(const RehearsalResult& run, const Event& event)
{
    QString text = EventDetails::SpanText(run, event);
    if (text.isEmpty())
        return {};
    if (event.stoppedByLine != 0)
        text += QStringLiteral(", stopped by line %1").arg(event.stoppedByLine);
    return Html::Element("p", QStringLiteral("span"), QStringLiteral("Plays ") + text);
}

QString Tracks(const Event& event)
{
    QString items;
    for (const TrackTime& track : event.tracks)
    {
        const bool isHeard = event.end_ms == Event::OPEN || track.begin_ms < event.end_ms;
        items += Html::Element("li", isHeard ? QString() : QStringLiteral("unheard"),
                               Time(track.begin_ms) + u' ' + Html::Text(track.file) +
                                   (isHeard ? QString() : QStringLiteral(" (not reached)")));
    }
    return items.isEmpty() ? QString() : Html::Element("ol", QStringLiteral("tracks"), items);
}

QString Line(const RehearsalResult& run, const Event& event)
{
    return Html::Element("p", QStringLiteral("source"),
                         QStringLiteral("Line %1, %2: ").arg(event.lineNumber).arg(event.taskName) +
                             LineHtml::Source(run, event.lineNumber));
}

QString Requests(const Event& event)
{
    QString items;
    for (const Request& request : event.requests)
        items += Html::Element("li", {},
                               (event.isStartKnown ? Time(request.moment_ms) + u' ' : QString()) +
                                   Html::Element("code", {}, Html::Text(request.Text())));
    return items.isEmpty() ? Html::Element("p", QStringLiteral("requests"), QStringLiteral("Nothing is asked for."))
                           : Html::Element("ul", QStringLiteral("requests"), items);
}

QString Risk(const Event& event)
{
    const QString text = EventText::Risk(event);
    return text.isEmpty() ? text : Html::Element("p", QStringLiteral("risk"), text);
}

} // namespace

QString EventDetails::SpanText(const RehearsalResult& run, const Event& event)
{
    if (!WeekLayout::IsBar(event))
        return {};
    const qint64 shown_ms = WeekLayout::Shown_ms(event, run.begin_ms, run.end_ms);
    const QString begin =
        event.isStartKnown ? DayAndTime(event.begin_ms, shown_ms) : QStringLiteral("before this rehearsal");
    const QString end = EndText(run, event);
    if (event.end_ms != Event::OPEN)
        return QStringLiteral("from %1 to %2").arg(begin, end);
    return LastEnd_ms(run, event) != Event::OPEN
               ? QStringLiteral("from %1 to %2, unless it is stopped behind the end of this rehearsal").arg(begin, end)
               : QStringLiteral("from %1 on: it goes on behind the end of this rehearsal").arg(begin);
}

QString EventDetails::EndText(const RehearsalResult& run, const Event& event)
{
    if (!WeekLayout::IsBar(event))
        return {};
    const qint64 end_ms = event.end_ms == Event::OPEN ? LastEnd_ms(run, event) : event.end_ms;
    if (end_ms == Event::OPEN)
        return QStringLiteral("goes on");
    return DayAndTime(end_ms, WeekLayout::Shown_ms(event, run.begin_ms, run.end_ms));
}

QString EventDetails::Markup(const RehearsalResult& run, const Event& event, const QString& title)
{
    return Html::Element("div", QStringLiteral("more"),
                         Html::Element("p", QStringLiteral("title"), title) + Why(run, event) + Span(run, event) +
                             Tracks(event) + Line(run, event) + Requests(event) + Risk(event));
}

#include "EventHtml.h"

#include "EntryText.h"
#include "EventDetails.h"
#include "Html.h"
#include "KindGroup.h"
#include "base/Moment.h"
#include "engine/RehearsalResult.h"
#include "words/EventText.h"
#include "words/Kinds.h"

#include <QLocale>

using WeekLayout::NARROW;
using WeekLayout::WIDE;

namespace
{

const QString MARK_SEPARATOR = QStringLiteral(", ");
const QString CARRIED = QStringLiteral("still"); // in the place of a time
const QString DASH = QStringLiteral("\u2013");

QString Label(const Event& event, const QString& subject)
{
    const Kind& kind = Kinds::Of(event.type);
    const bool isIconic = kind.hasIcon && !subject.isEmpty();
    return Html::Element("span", isIconic ? QStringLiteral("kind iconic") : QStringLiteral("kind"),
                         QLatin1String(kind.label)) +
           (subject.isEmpty() ? QString() : u' ' + Html::Text(subject));
}

QString Badges(const QStringList& marks)
{
    QString text;
    for (const QString& mark : marks)
        text += Html::Element("span", QStringLiteral("badge ") + mark, mark) + u' ';
    return text.isEmpty() ? QString() : u' ' + Html::Element("span", QStringLiteral("badges"), text);
}

// For paper, which has no bars: when it ends.
QString Until(const RehearsalResult& run, const Event& event)
{
    const QString end = EventDetails::EndText(run, event);
    return end.isEmpty() ? end : DASH + end;
}

QString UntilMarkup(const RehearsalResult& run, const Event& event)
{
    const QString until = Until(run, event);
    return until.isEmpty() ? until : Html::Element("span", QStringLiteral("until"), until);
}

QString Button(const QString& times, const QString& content)
{
    return QStringLiteral("<button type=\"button\">%1 %2</button>").arg(times, content);
}

// Which part of date has gone by on the clock at that moment, in per cent.
int PartOf(const QDate& date, qint64 moment_ms)
{
    constexpr int WHOLE = 100;
    const QDate other = Moment::LocalDate(moment_ms);
    if (other != date)
        return other < date ? 0 : WHOLE;
    return QTime(0, 0).secsTo(Moment::LocalTime(moment_ms)) * WHOLE / HourScale::DAY_S;
}

// Where the bar lies in its day, for narrow pages that have no columns.
QString Extent(const RehearsalResult& run, const Event& event, const QDate& date)
{
    if (!WeekLayout::IsBar(event))
        return {};
    const qint64 end_ms = event.end_ms == Event::OPEN ? run.end_ms : event.end_ms;
    return QStringLiteral("<i class=\"extent\" style=\"--from:%1%;--to:%2%\" aria-hidden=\"true\"></i>")
        .arg(PartOf(date, event.begin_ms))
        .arg(PartOf(date, end_ms));
}

} // namespace

QString EventHtml::Id(size_t event)
{
    return u'e' + QString::number(event);
}

QStringList EventHtml::Marks(const RehearsalResult& run, const Event& event)
{
    return EventText::Mark(event, run.begin_ms).split(MARK_SEPARATOR, Qt::SkipEmptyParts);
}

QString EventHtml::TimeText(qint64 moment_ms)
{
    const QTime time = Moment::LocalTime(moment_ms);
    return time.toString(time.second() == 0 ? QStringLiteral("HH:mm") : QStringLiteral("HH:mm:ss"));
}

QString EventHtml::DateText(const QDate& date)
{
    return QLocale::c().toString(date, QStringLiteral("ddd d MMMM"));
}

QString EventHtml::Entry(const RehearsalResult& run, const PageNotes& notes, const WeekLayout::Entry& entry)
{
    const Event& event = run.events[entry.event];
    const qint64 shown_ms = WeekLayout::Shown_ms(event, run.begin_ms, run.end_ms);
    const QString subject = EntryText::Subject(event, notes);
    const QString label = Label(event, EntryText::Shortened(subject));
    const WeekLayout::PerWidth<int>& rows = entry.room.rows;
    const QString place =
        QStringLiteral("data-s=\"%1\" data-line=\"%2\" data-kind=\"%3\" style=\"%4;%5\"")
            .arg(entry.time_s)
            .arg(event.lineNumber)
            .arg(KindGroup::Of(event.type).name, Html::PerWidth("top", entry.top[NARROW], entry.top[WIDE]),
                 Html::PerWidth("height", rows[NARROW], rows[WIDE]));
    const QDate date = Moment::LocalDate(shown_ms);
    QStringList classes{QLatin1String(Kinds::Of(event.type).style)};
    if (rows[NARROW] == 1)
        classes.append(QStringLiteral("single"));
    if (rows[WIDE] == 1)
        classes.append(QStringLiteral("wide-single"));
    if (entry.isCarried)
        return QStringLiteral("<li class=\"entry carried %1\" data-of=\"%2\" %3>%4</li>\n")
            .arg(classes.join(u' '), QString::number(entry.event), place,
                 Button(Html::Element("span", QStringLiteral("still"), CARRIED) + UntilMarkup(run, event), label));
    const QStringList marks = Marks(run, event);
    const QString title = DateText(date) + QStringLiteral(", ") + Moment::TimeText(shown_ms) + QStringLiteral(": ") +
                          Label(event, subject);
    return QStringLiteral("<li class=\"entry %1\" id=\"%2\" data-event=\"%3\" %4>%5%6</li>\n")
        .arg((classes + marks).join(u' '), Id(entry.event), QString::number(entry.event), place,
             Button(Html::Element("time", {}, TimeText(shown_ms)) + UntilMarkup(run, event),
                    label + Badges(marks) + Extent(run, event, date)),
             EventDetails::Markup(run, event, title));
}

WeekLayout::Room EventHtml::RoomFor(const RehearsalResult& run, const PageNotes& notes, const Event& event,
                                    bool isCarried, int columns)
{
    if (isCarried)
        return EntryText::RoomFor(event, CARRIED, Until(run, event), {}, notes, columns);
    const QString time = TimeText(WeekLayout::Shown_ms(event, run.begin_ms, run.end_ms));
    return EntryText::RoomFor(event, time, Until(run, event), Marks(run, event), notes, columns);
}

QString EventHtml::Bar(const RehearsalResult& run, const WeekLayout::Bar& bar)
{
    QStringList classes{QStringLiteral("bar"), QLatin1String(Kinds::Of(run.events[bar.event].type).style)};
    if (bar.isBegun)
        classes.append(QStringLiteral("begun"));
    if (bar.isOpen)
        classes.append(QStringLiteral("open"));
    else if (bar.goesOn)
        classes.append(QStringLiteral("goes-on"));
    return QStringLiteral("<i class=\"%1\" data-of=\"%2\" data-kind=\"%3\" style=\"%4;%5;--lane-number:%6\"></i>\n")
        .arg(classes.join(u' '), QString::number(bar.event), KindGroup::Of(run.events[bar.event].type).name,
             Html::PerWidth("top", bar.top[NARROW], bar.top[WIDE]),
             Html::PerWidth("length", bar.length[NARROW], bar.length[WIDE]), QString::number(bar.lane));
}

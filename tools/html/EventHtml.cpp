#include "EventHtml.h"

#include "EventDetails.h"
#include "Html.h"
#include "base/Moment.h"
#include "engine/RehearsalResult.h"
#include "engine/Workspace.h"
#include "words/EventText.h"
#include "words/Kinds.h"

#include <QLocale>

namespace
{

const QString MARK_SEPARATOR = QStringLiteral(", ");

QString Subject(const Event& event)
{
    // What asks for nothing cannot tell what it is about but by its line.
    if (event.requests.isEmpty())
        return QStringLiteral("line %1").arg(event.lineNumber);
    const QString subject = EventText::Subject(event);
    const qsizetype server = subject.indexOf(QLatin1String(Workspace::SERVER));
    return server < 0 ? subject : subject.mid(server + QLatin1String(Workspace::SERVER).size() + 1);
}

QString Label(const Event& event)
{
    const Kind& kind = Kinds::Of(event.type);
    const QString subject = Subject(event);
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
    return text.isEmpty() ? QString() : u' ' + Html::Element("span", QStringLiteral("badges"), text.trimmed());
}

QString Button(qint64 shown_ms, const QString& content)
{
    return QStringLiteral("<button type=\"button\"><time>%1</time> %2</button>")
        .arg(EventHtml::TimeText(shown_ms), content);
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

QString EventHtml::Entry(const RehearsalResult& run, const WeekLayout::Entry& entry)
{
    const Event& event = run.events[entry.event];
    const QLatin1String style(Kinds::Of(event.type).style);
    const qint64 shown_ms = WeekLayout::Shown_ms(event, run.begin_ms, run.end_ms);
    const QString place =
        QStringLiteral("data-s=\"%1\" style=\"--top:%2\"").arg(entry.time_s).arg(Html::Rows(entry.top));
    const QDate date = Moment::LocalDate(shown_ms);
    if (entry.isCarried)
        return QStringLiteral(
                   "<li class=\"entry carried %1\" data-of=\"%2\" %3><button type=\"button\">%4</button></li>\n")
            .arg(style, QString::number(entry.event), place,
                 Html::Element("span", QStringLiteral("kind"), QStringLiteral("still")) + u' ' + Label(event));
    const QStringList marks = Marks(run, event);
    const QString title =
        DateText(date) + QStringLiteral(", ") + Moment::TimeText(shown_ms) + QStringLiteral(": ") + Label(event);
    return QStringLiteral("<li class=\"entry %1\" id=\"%2\" data-event=\"%3\" %4>%5%6</li>\n")
        .arg((QStringList{style, marks.isEmpty() ? QStringLiteral("plain") : QStringLiteral("marked")} + marks)
                 .join(u' '),
             Id(entry.event), QString::number(entry.event), place,
             Button(shown_ms, Label(event) + Badges(marks) + Extent(run, event, date)),
             EventDetails::Markup(run, event, title));
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
    return QStringLiteral("<i class=\"%1\" data-of=\"%2\" style=\"--top:%3;--length:%4;--lane-number:%5\"></i>\n")
        .arg(classes.join(u' '), QString::number(bar.event), Html::Rows(bar.top), Html::Rows(bar.length),
             QString::number(bar.lane));
}

#include "WeekHtml.h"

#include "EventHtml.h"
#include "Html.h"
#include "InForce.h"
#include "PaperSheet.h"
#include "base/Moment.h"
#include "engine/RehearsalResult.h"

#include <QLocale>

using WeekLayout::NARROW;
using WeekLayout::WIDE;

namespace
{

constexpr qint64 HOUR_MS = 3600 * Moment::MS_PER_S;

QString WithYear(const QDate& date)
{
    return QLocale::c().toString(date, QStringLiteral("ddd d MMMM yyyy"));
}

// Only a date on which the clocks are changed has another length.
QString LengthNote(const WeekLayout::Day& day)
{
    const qint64 length_ms = day.end_ms - day.begin_ms;
    if (length_ms == Moment::DAY_MS)
        return {};
    const QString hours = QString::number(static_cast<double>(length_ms) / static_cast<double>(HOUR_MS));
    return u' ' + Html::Element("span", QStringLiteral("note"), hours + QStringLiteral(" hours"));
}

QString Hours(const WeekLayout::PerWidth<HourScale>& scale)
{
    QString text;
    for (int hour = 0; hour < HourScale::HOURS; ++hour)
    {
        const int time_s = hour * HourScale::HOUR_S;
        text += QStringLiteral("<i style=\"%1\">%2</i>")
                    .arg(Html::PerWidth("top", scale[NARROW].Place(time_s), scale[WIDE].Place(time_s)))
                    .arg(hour, 2, 10, QLatin1Char('0'));
    }
    return QStringLiteral("<div class=\"hours\" aria-hidden=\"true\">%1</div>\n").arg(text);
}

// "0,0 3600,1.00": for the page's script, which turns a height into a time of day.
QString Knots(const HourScale& scale)
{
    QStringList texts;
    for (const HourScale::Knot& knot : scale.Knots())
        texts.append(QString::number(knot.time_s) + u',' + Html::Rows(knot.top));
    return texts.join(u' ');
}

QString Column(const RehearsalResult& run, const PageNotes& notes, const InForce& inForce, const WeekLayout::Day& day)
{
    QString bars;
    for (const WeekLayout::Bar& bar : day.bars)
        bars += EventHtml::Bar(run, bar);
    QString entries;
    for (const WeekLayout::Entry& entry : day.entries)
        entries += EventHtml::Entry(run, notes, entry);
    const QString list = entries.isEmpty()
                             ? Html::Element("p", QStringLiteral("nothing"), QStringLiteral("Nothing on this day"))
                             : Html::Element("ol", QStringLiteral("entries"), u'\n' + entries);
    const QString id = QStringLiteral("day-") + day.date.toString(Qt::ISODate);
    const bool isWeekend = day.date.dayOfWeek() >= Qt::Saturday;
    QString text =
        QStringLiteral("<section class=\"day%1\" aria-labelledby=\"%2\" data-force=\"%3\" style=\"--lanes:%4\">\n")
            .arg(isWeekend ? QStringLiteral(" weekend") : QString(), id, inForce.Of(day))
            .arg(day.lanes);
    text += QStringLiteral("<h3 id=\"%1\">").arg(id) + EventHtml::DateText(day.date) + LengthNote(day) +
            QStringLiteral("</h3>\n<div class=\"column\">\n");
    if (!bars.isEmpty())
        text += QStringLiteral("<div class=\"bars\" aria-hidden=\"true\">\n") + bars + QStringLiteral("</div>\n");
    return text + list + QStringLiteral("</div>\n</section>\n");
}

} // namespace

QString WeekHtml::Id(size_t number)
{
    return QStringLiteral("week-%1").arg(number);
}

QString WeekHtml::Title(const WeekLayout::Week& week)
{
    const QDate first = week.days.front().date;
    const QDate last = week.days.back().date;
    return first == last ? WithYear(first) : EventHtml::DateText(first) + QStringLiteral(" to ") + WithYear(last);
}

QString WeekHtml::Section(const RehearsalResult& run, const PageNotes& notes, const InForce& inForce,
                          const WeekLayout::Week& week, size_t number)
{
    QString text = QStringLiteral("<section class=\"week\" id=\"%1\" data-narrow=\"%2\" data-wide=\"%3\" "
                                  "style=\"%4;--lines:%5;--days:%6\">\n<h2>")
                       .arg(Id(number), Knots(week.scale[NARROW]), Knots(week.scale[WIDE]),
                            Html::PerWidth("rows", week.scale[NARROW].Rows(), week.scale[WIDE].Rows()))
                       .arg(PaperSheet::Lines(week))
                       .arg(week.days.size());
    text += Title(week) + QStringLiteral("</h2>\n<div class=\"days\">\n") + Hours(week.scale);
    for (const WeekLayout::Day& day : week.days)
        text += Column(run, notes, inForce, day);
    return text + QStringLiteral("</div>\n</section>\n");
}

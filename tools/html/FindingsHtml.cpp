#include "FindingsHtml.h"

#include "EventHtml.h"
#include "Html.h"
#include "LineHtml.h"
#include "PageNotes.h"
#include "engine/RehearsalResult.h"

#include <algorithm>

namespace
{

const QString ERROR = QStringLiteral("error");
const QString WARNING = QStringLiteral("warning");

// By line: its first event.
QHash<int, size_t> FirstEvents(const RehearsalResult& run)
{
    QHash<int, size_t> first;
    for (size_t i = run.events.size(); i-- > 0;)
        first[run.events[i].lineNumber] = i;
    return first;
}

QString Item(const RehearsalResult& run, const PageNotes::Finding& finding, const QHash<int, size_t>& first)
{
    const QString severity = finding.isError ? ERROR : WARNING;
    const QString number = QStringLiteral("Line %1").arg(finding.line);
    const auto event = first.find(finding.line);
    const QString line =
        event == first.end() ? number : QStringLiteral("<a href=\"#%1\">%2</a>").arg(EventHtml::Id(*event), number);
    QString text = Html::Element("span", QStringLiteral("badge ") + severity, severity) + u' ';
    text += Html::Element("b", {}, line) + QStringLiteral(", ") + Html::Attribute(finding.text) + u' ' +
            Html::Element("span", QStringLiteral("note"), Html::Attribute(finding.name));
    return QStringLiteral("<li data-line=\"%1\">").arg(finding.line) +
           Html::Element("p", QStringLiteral("finding"), text) +
           Html::Element("p", QStringLiteral("source"), LineHtml::Source(run, finding.line)) +
           QStringLiteral("</li>\n");
}

qsizetype Errors(const PageNotes& notes)
{
    return std::ranges::count(notes.findings, true, &PageNotes::Finding::isError);
}

} // namespace

QString FindingsHtml::Summary(const RehearsalResult& run, const PageNotes& notes)
{
    if (notes.findings.empty())
        return Html::Element("p", {}, QStringLiteral("The check found nothing wrong in the schedule.")) + u'\n';
    const qsizetype errors = Errors(notes);
    const auto warnings = static_cast<qsizetype>(notes.findings.size()) - errors;
    QStringList parts;
    if (errors > 0)
        parts.append(Html::Counted(errors, "error"));
    if (warnings > 0)
        parts.append(Html::Counted(warnings, "warning"));
    QString text = QStringLiteral("<a href=\"#findings\">The check found ") + parts.join(QStringLiteral(" and ")) +
                   QStringLiteral("</a>.");
    if (const int rejected = run.Rejected(); rejected > 0)
        text += QStringLiteral(" The daemon leaves out ") + Html::Counted(rejected, "line") +
                QStringLiteral(" of the schedule.");
    return Html::Element("p", QStringLiteral("summary"), text) + u'\n';
}

QString FindingsHtml::Section(const RehearsalResult& run, const PageNotes& notes)
{
    if (notes.findings.empty())
        return {};
    const QHash<int, size_t> first = FirstEvents(run);
    QString items;
    for (const PageNotes::Finding& finding : notes.findings)
        items += Item(run, finding, first);
    return QStringLiteral("<section id=\"findings\" aria-labelledby=\"findings-title\">\n"
                          "<h2 id=\"findings-title\">What the check found</h2>\n<ul>\n%1</ul>\n</section>\n")
        .arg(items);
}

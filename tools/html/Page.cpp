#include "Page.h"

#include "Html.h"
#include "Legend.h"
#include "WeekHtml.h"
#include "WeekLayout.h"
#include "base/Moment.h"
#include "engine/RehearsalResult.h"
#include "words/EarlyText.h"
#include "words/LineNotes.h"

#include <QFile>
#include <QFileInfo>
#include <QLocale>

#include <numeric>

namespace
{

// What the page may load: nothing. Its style and its script are its own.
const QString POLICY = QStringLiteral("default-src 'none'; style-src 'unsafe-inline'; script-src 'unsafe-inline'");

const QString STYLE_FILE = QStringLiteral(":/page/page.css");
const QString LIST_STYLE_FILE = QStringLiteral(":/page/list.css"); // overrules the other, so it comes behind it
const QString SCRIPT_FILE = QStringLiteral(":/page/page.js");

// A part of the program: it is there.
QString Part(const QString& name)
{
    QFile file(name);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("%s: %s", qPrintable(name), qPrintable(file.errorString()));
    return QString::fromUtf8(file.readAll());
}

QString MomentText(qint64 moment_ms)
{
    return QLocale::c().toString(Moment::LocalDate(moment_ms), QStringLiteral("dddd d MMMM yyyy")) + u' ' +
           Moment::LocalTime(moment_ms).toString(QStringLiteral("HH:mm"));
}

QString Counted(qsizetype number, const char* noun)
{
    return QStringLiteral("%1 %2%3").arg(number).arg(QLatin1String(noun), QLatin1String(number == 1 ? "" : "s"));
}

QString Rejected(const RehearsalResult& run)
{
    QString items;
    for (const ScheduleLine& line : run.lines)
    {
        if (line.IsRejected())
            items +=
                Html::Element("li", {},
                              QStringLiteral("Line %1: ").arg(line.number) + Html::Attribute(line.rejected->reason) +
                                  QStringLiteral(": ") + Html::Element("code", {}, Html::Text(line.text)));
    }
    if (items.isEmpty())
        return {};
    return QStringLiteral("<details class=\"rejected\"><summary>The device leaves out %1 of the schedule</summary>")
               .arg(Counted(run.Rejected(), "line")) +
           Html::Element("ul", {}, items) + QStringLiteral("</details>\n");
}

QString Notes(const QString& title, const QString& items)
{
    if (items.isEmpty())
        return {};
    return QStringLiteral("<details class=\"rejected notes\"><summary>%1</summary>").arg(title) +
           Html::Element("ul", {}, items) + QStringLiteral("</details>\n");
}

// What the columns do not show.
QString Notes(const RehearsalResult& run)
{
    QString idle;
    for (const LineNotes::Note& note : LineNotes::Of(run.lines))
        idle += Html::Element("li", {}, QStringLiteral("Line %1 %2").arg(note.line).arg(Html::Attribute(note.text)));
    if (const std::vector<int> lines = LineNotes::NotDue(run); !lines.empty())
        idle += Html::Element("li", {}, QStringLiteral("Not due in this time: ") + LineNotes::Numbers(lines));
    QString loads;
    for (const EarlyLoads::Early& early : EarlyLoads::Of(run.lines, Moment::LocalDate(run.begin_ms)))
        loads += Html::Element("li", {}, QStringLiteral("Line %1: %2").arg(early.line).arg(EarlyText::Of(early)));
    return Notes(QStringLiteral("Lines that do not start at their time"), idle) +
           Notes(QStringLiteral("What a load at another moment would start too early"), loads);
}

QString Header(const RehearsalResult& run, const QString& zone)
{
    const qsizetype requests =
        std::accumulate(run.events.begin(), run.events.end(), qsizetype{0},
                        [](qsizetype sum, const Event& event) { return sum + event.requests.size(); });
    return QStringLiteral("<header>\n<h1>Schedule ") + Html::Text(QFileInfo(run.file).fileName()) +
           QStringLiteral("</h1>\n<p>") + MomentText(run.begin_ms) + QStringLiteral(" to ") + MomentText(run.end_ms) +
           QStringLiteral(". Times are those of ") + Html::Text(zone) + QStringLiteral(". ") +
           Counted(static_cast<qsizetype>(run.events.size()), "event") + QStringLiteral(", ") +
           Counted(requests, "request") + QStringLiteral(" to the device.</p>\n") + Rejected(run) +
           Legend::Markup(run) + QStringLiteral("</header>\n");
}

QString Navigation(const std::vector<WeekLayout::Week>& weeks)
{
    if (weeks.size() < 2)
        return {};
    QString links;
    for (size_t i = 0; i < weeks.size(); ++i)
        links +=
            QStringLiteral("<li><a href=\"#%1\">%2</a></li>\n").arg(WeekHtml::Id(i + 1), WeekHtml::Title(weeks[i]));
    return QStringLiteral("<nav aria-label=\"Weeks\"><ul>\n%1</ul></nav>\n").arg(links);
}

const QString DETAILS = QStringLiteral(
    "<aside id=\"details\" aria-label=\"Details\">\n<button type=\"button\" class=\"close\">Close</button>\n"
    "<div class=\"content\" aria-live=\"polite\"><p>Choose an entry to see what the device "
    "does.</p></div>\n</aside>\n");

} // namespace

QString Page::Markup(const RehearsalResult& run, const QString& zone)
{
    const std::vector<WeekLayout::Week> weeks = WeekLayout::Weeks(run.events, run.begin_ms, run.end_ms);
    QString text = QStringLiteral("<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
                                  "<meta http-equiv=\"Content-Security-Policy\" content=\"%1\">\n"
                                  "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n")
                       .arg(POLICY);
    text += QStringLiteral("<title>Schedule ") + Html::Attribute(QFileInfo(run.file).fileName()) +
            QStringLiteral("</title>\n<style>\n") + Part(STYLE_FILE) + Part(LIST_STYLE_FILE) +
            QStringLiteral("</style>\n</head>\n<body>\n");
    text += Header(run, zone) + Navigation(weeks) + QStringLiteral("<main>\n");
    for (size_t i = 0; i < weeks.size(); ++i)
        text += WeekHtml::Section(run, weeks[i], i + 1);
    return text + Notes(run) + QStringLiteral("</main>\n") + DETAILS + QStringLiteral("<script>\n") +
           Part(SCRIPT_FILE) + QStringLiteral("</script>\n</body>\n</html>\n");
}

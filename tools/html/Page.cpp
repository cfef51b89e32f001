#include "Page.h"

#include "EventHtml.h"
#include "FindingsHtml.h"
#include "Html.h"
#include "InForce.h"
#include "Legend.h"
#include "PageNotes.h"
#include "WeekHtml.h"
#include "WeekLayout.h"
#include "base/Moment.h"
#include "base/ToolError.h"
#include "engine/RehearsalResult.h"
#include "words/CutText.h"
#include "words/EarlyText.h"
#include "words/LineNotes.h"

#include <QFile>
#include <QFileInfo>
#include <QLocale>

#include <array>
#include <numeric>
#include <span>

namespace
{

// What the page may load: nothing. Its style and its script are its own.
const QString POLICY = QStringLiteral("default-src 'none'; style-src 'unsafe-inline'; script-src 'unsafe-inline'");

// A later one overrules those before it.
constexpr std::array STYLES{"page.css", "week.css", "panel.css", "list.css", "paper.css"};
constexpr std::array SCRIPTS{"filter.js", "force.js", "page.js"};

constexpr qsizetype MOST_BYTES = Page::MOST_MB * 1000 * 1000;

// Parts of the program: they are there.
QString Parts(std::span<const char* const> names)
{
    QString text;
    for (const char* name : names)
    {
        QFile file(QStringLiteral(":/page/") + QLatin1String(name));
        if (!file.open(QIODevice::ReadOnly))
            qFatal("%s: %s", name, qPrintable(file.errorString()));
        text += QString::fromUtf8(file.readAll());
    }
    return text;
}

QString MomentText(qint64 moment_ms)
{
    return QLocale::c().toString(Moment::LocalDate(moment_ms), QStringLiteral("dddd d MMMM yyyy")) + u' ' +
           Moment::LocalTime(moment_ms).toString(QStringLiteral("HH:mm"));
}

QString Cut(const RehearsalResult& run)
{
    return run.isCut ? Html::Element("p", QStringLiteral("cut"), Html::Text(CutText::Of(run))) + u'\n' : QString();
}

QString Notes(const QString& title, const QString& items)
{
    if (items.isEmpty())
        return {};
    return QStringLiteral("<section class=\"notes\">\n<h2>%1</h2>\n").arg(title) + Html::Element("ul", {}, items) +
           QStringLiteral("\n</section>\n");
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
    return Notes(QStringLiteral("Lines that do not always start at their time"), idle) +
           Notes(QStringLiteral("What a load at another moment would start too early"), loads);
}

QString Header(const RehearsalResult& run, const PageNotes& notes)
{
    const qsizetype requests =
        std::accumulate(run.events.begin(), run.events.end(), qsizetype{0},
                        [](qsizetype sum, const Event& event) { return sum + event.requests.size(); });
    return QStringLiteral("<header>\n<a class=\"skip\" href=\"#%1\">To the first week</a>\n<h1>Schedule ")
               .arg(WeekHtml::Id(1)) +
           Html::Text(QFileInfo(run.file).fileName()) + QStringLiteral("</h1>\n<p>") + MomentText(run.begin_ms) +
           QStringLiteral(" to ") + MomentText(run.end_ms) + QStringLiteral(". Times are those of ") +
           Html::Text(notes.zone) + QStringLiteral(". ") +
           Html::Counted(static_cast<qsizetype>(run.events.size()), "event") + QStringLiteral(", ") +
           Html::Counted(requests, "request") + QStringLiteral(" to the device.</p>\n") + Cut(run) +
           FindingsHtml::Summary(run, notes) + Legend::Markup(run) + QStringLiteral("</header>\n");
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
    "<aside id=\"details\" aria-label=\"Details\">\n<div class=\"top\">\n"
    "<div class=\"force\"><p>Choose an entry, or point at a time, to see what the device does.</p></div>\n"
    "<button type=\"button\" class=\"close\">Close</button>\n</div>\n"
    "<div class=\"content\" aria-live=\"polite\"></div>\n</aside>\n");

} // namespace

QString Page::Markup(const RehearsalResult& run, const PageNotes& notes)
{
    const std::vector<WeekLayout::Week> weeks =
        WeekLayout::Weeks(run.events, run.begin_ms, run.end_ms, [&](const Event& event, bool isCarried, int columns) {
            return EventHtml::RoomFor(run, notes, event, isCarried, columns);
        });
    const InForce inForce(run, notes);
    QString text = QStringLiteral("<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
                                  "<meta http-equiv=\"Content-Security-Policy\" content=\"%1\">\n"
                                  "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n")
                       .arg(POLICY);
    text += QStringLiteral("<title>Schedule ") + Html::Attribute(QFileInfo(run.file).fileName()) +
            QStringLiteral("</title>\n<style>\n") + Parts(STYLES) + QStringLiteral("</style>\n</head>\n<body>\n");
    text += Header(run, notes) + Navigation(weeks) + QStringLiteral("<main>\n");
    for (size_t i = 0; i < weeks.size() && text.size() <= MOST_BYTES; ++i)
        text += WeekHtml::Section(run, notes, inForce, weeks[i], i + 1);
    text += FindingsHtml::Section(run, notes) + Notes(run) + QStringLiteral("</main>\n") + DETAILS +
            QStringLiteral("<script type=\"application/json\" id=\"states\">") + QString::fromUtf8(inForce.Table()) +
            QStringLiteral("</script>\n<script>\n\"use strict\";\n") + Parts(SCRIPTS) +
            QStringLiteral("</script>\n</body>\n</html>\n");
    if (text.toUtf8().size() > MOST_BYTES)
        throw ToolError(
            QStringLiteral("the page would be larger than %1 MB: ask for fewer --days, or for --csv").arg(MOST_MB));
    return text;
}

#include "Legend.h"

#include "EventHtml.h"
#include "Html.h"
#include "KindFilter.h"
#include "engine/RehearsalResult.h"

#include <QHash>

#include <array>

namespace
{

struct MarkRow
{
    const char* mark;
    const char* meaning;
};

constexpr std::array MARKS{
    MarkRow{"lost", "found too late, does not happen"},
    MarkRow{"missed", "due, does not happen"},
    MarkRow{"skipped", "would be stopped at once, does not happen"},
    MarkRow{"late", "begins after its time"},
    MarkRow{"repeated", "comes again on the same day"},
    MarkRow{"forced", "switched to what should be on"},
    MarkRow{"by chance", "comes only if the daemon was started at the right moment"},
    MarkRow{"playing", "began before this rehearsal"},
};

} // namespace

QString Legend::Markup(const RehearsalResult& run)
{
    // By mark: how often, and the first event.
    QHash<QString, QPair<int, size_t>> counts;
    for (size_t i = 0; i < run.events.size(); ++i)
    {
        for (const QString& mark : EventHtml::Marks(run, run.events[i]))
        {
            auto entry = counts.find(mark);
            if (entry == counts.end())
                entry = counts.insert(mark, {0, i});
            ++entry->first;
        }
    }
    QString marks;
    for (const MarkRow& row : MARKS)
    {
        const QString mark = QLatin1String(row.mark);
        if (!counts.contains(mark))
            continue;
        const auto& [count, first] = counts[mark];
        marks += QStringLiteral("<li><a href=\"#%1\"><span class=\"badge %2\">%2</span></a> %3: %4</li>\n")
                     .arg(EventHtml::Id(first), mark)
                     .arg(count == 1 ? QStringLiteral("once") : QStringLiteral("%1 times").arg(count))
                     .arg(QLatin1String(row.meaning));
    }
    return QStringLiteral("<section class=\"legend\" aria-label=\"Legend\">\n") + KindFilter::Markup(run.events) +
           (marks.isEmpty() ? QString() : Html::Element("ul", {}, marks)) + QStringLiteral("</section>\n");
}

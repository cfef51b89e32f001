#include "Legend.h"

#include "EventHtml.h"
#include "Html.h"
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
    MarkRow{"by chance", "comes only if the device was started at the right moment"},
    MarkRow{"playing", "began before this rehearsal"},
};

// The kinds of drawing, and what they are called.
struct StyleRow
{
    const char* style;
    const char* label;
    bool isBar;
};

constexpr std::array STYLES{
    StyleRow{"playlist", "playlist", true}, StyleRow{"stream", "stream", true},
    StyleRow{"radio", "radio", true},       StyleRow{"aux", "aux input", true},
    StyleRow{"message", "message", false},  StyleRow{"setting", "everything else", false},
};

QString Styles()
{
    QString items;
    for (const StyleRow& style : STYLES)
        items +=
            QStringLiteral("<li><i class=\"swatch %1%2\"></i><i class=\"icon %1\"></i>%3</li>\n")
                .arg(QLatin1String(style.style), QLatin1String(style.isBar ? " bar" : ""), QLatin1String(style.label));
    return items;
}

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
    return QStringLiteral("<section class=\"legend\" aria-label=\"Legend\">\n<ul>\n") + Styles() +
           QStringLiteral("</ul>\n") + (marks.isEmpty() ? QString() : Html::Element("ul", {}, marks)) +
           QStringLiteral("</section>\n");
}

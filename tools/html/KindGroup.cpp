#include "KindGroup.h"

#include "words/Kinds.h"

#include <algorithm>
#include <array>

namespace
{

// The styles that belong to one group each. What is set has one style, and a group for each kind.
struct StyleRow
{
    const char* style;
    const char* label;
    bool isBar;
};

constexpr std::array STYLES{
    StyleRow{"playlist", "Playlist", true}, StyleRow{"stream", "Stream", true},    StyleRow{"radio", "Radio", true},
    StyleRow{"aux", "Aux input", true},     StyleRow{"message", "Message", false},
};

} // namespace

KindGroup::Group KindGroup::Of(TaskType type)
{
    const Kind& kind = Kinds::Of(type);
    const QString style = QLatin1String(kind.style);
    const auto row =
        std::ranges::find_if(STYLES, [&](const StyleRow& one) { return style == QLatin1String(one.style); });
    if (row != STYLES.end())
        return {style, QLatin1String(row->label), style, row->isBar};
    const QString label = QLatin1String(kind.label);
    return {label.toLower().replace(u' ', u'-'), label, style, false};
}

#include "KindFilter.h"

#include "KindGroup.h"
#include "engine/Event.h"

#include <algorithm>
#include <set>

namespace
{

// What is set has no drawing of its own.
bool IsHeard(const KindGroup::Group& group)
{
    return group.name == group.style;
}

QString Drawing(const KindGroup::Group& group)
{
    if (!IsHeard(group))
        return {};
    return QStringLiteral("<i class=\"swatch %1%2\"></i><i class=\"icon %1\"></i>")
        .arg(group.style, group.isBar ? QStringLiteral(" bar") : QString());
}

} // namespace

QString KindFilter::Markup(const std::vector<Event>& events)
{
    std::set<TaskType> types;
    for (const Event& event : events)
        types.insert(event.type);
    std::vector<KindGroup::Group> groups;
    for (const TaskType type : types)
    {
        const KindGroup::Group group = KindGroup::Of(type);
        if (!std::ranges::count(groups, group.name, &KindGroup::Group::name))
            groups.push_back(group);
    }
    // What is heard comes first.
    std::ranges::stable_sort(groups, {}, [](const KindGroup::Group& group) { return !IsHeard(group); });
    QString items;
    for (const KindGroup::Group& group : groups)
        items += QStringLiteral("<li><label><input type=\"checkbox\" value=\"%1\" checked>%2%3</label></li>\n")
                     .arg(group.name, Drawing(group), group.label);
    return items.isEmpty() ? QString()
                           : QStringLiteral("<fieldset id=\"filter\">\n<legend>Show</legend>\n<ul>\n%1</ul>\n"
                                            "<output></output>\n</fieldset>\n")
                                 .arg(items);
}

#include "KindFilter.h"

#include "Html.h"
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

// A narrow page has no columns with bars, but a strip under each entry: see EventHtml::Entry.
QString Key(const std::vector<KindGroup::Group>& groups)
{
    if (std::ranges::none_of(groups, &KindGroup::Group::isBar))
        return {};
    return Html::Element("p", QStringLiteral("key"),
                         Html::Element("span", QStringLiteral("beside"),
                                       QStringLiteral("Bar beside the entries: how long it plays.")) +
                             Html::Element("span", QStringLiteral("strip"),
                                           QStringLiteral("Strip under an entry: when it plays, in a day from edge "
                                                          "to edge."))) +
           u'\n';
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
                                            "%2<output></output>\n</fieldset>\n")
                                 .arg(items, Key(groups));
}

#pragma once

#include <QString>

#include <vector>

struct Event;

// The page's legend of kinds, which chooses what is shown as well.
namespace KindFilter
{

// As markup: a box to tick for each group of kinds that has an event. Empty where there is none.
[[nodiscard]] QString Markup(const std::vector<Event>& events);

} // namespace KindFilter

#pragma once

#include <QString>

class RehearsalRun;

// What the page's colours, patterns and marks mean, and how often each mark is there.
namespace Legend
{

// As markup: the kinds, the marks with their numbers, and links to the first events that do not come as they are
// written.
[[nodiscard]] QString Markup(const RehearsalRun& run);

} // namespace Legend

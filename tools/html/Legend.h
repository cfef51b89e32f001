#pragma once

#include <QString>

struct RehearsalResult;

// What the page's colours, patterns and marks mean, which of the kinds are shown, and how often each mark is there.
namespace Legend
{

// As markup: the kinds, the marks with their numbers, and links to the first events that do not come as they are
// written.
[[nodiscard]] QString Markup(const RehearsalResult& run);

} // namespace Legend

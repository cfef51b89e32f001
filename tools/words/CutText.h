#pragma once

#include <QString>

struct RehearsalResult;

// What is said of a rehearsal that was ended before its end.
namespace CutText
{

// "interrupted: complete until Wed 2024-05-15 12:00:00". Where it did not even reach the span of interest, that
// nothing is shown.
[[nodiscard]] QString Of(const RehearsalResult& run);

} // namespace CutText

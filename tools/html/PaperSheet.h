#pragma once

#include "WeekLayout.h"

// A week on paper: a sheet of columns in landscape.
namespace PaperSheet
{

// How many lines the sheet has: as few as its fullest day can do with, since the text is the larger the fewer they are,
// and no more than can be read. A day that is fuller than that does not fit.
[[nodiscard]] int Lines(const WeekLayout::Week& week);

} // namespace PaperSheet

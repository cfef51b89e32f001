#pragma once

#include "WeekLayout.h"

#include <QString>

class InForce;
struct PageNotes;
struct RehearsalResult;

// A week on a page: a section with a column for each day.
namespace WeekHtml
{

// "week-1"; number: counted from 1.
[[nodiscard]] QString Id(size_t number);

// "Mon 25 March to Sun 31 March 2024".
[[nodiscard]] QString Title(const WeekLayout::Week& week);

[[nodiscard]] QString Section(const RehearsalResult& run, const PageNotes& notes, const InForce& inForce,
                              const WeekLayout::Week& week, size_t number);

} // namespace WeekHtml

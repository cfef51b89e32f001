#pragma once

#include <QString>

struct PageNotes;
struct RehearsalResult;

// What the check has found, on a page.
namespace FindingsHtml
{

// A paragraph with their numbers, which leads to the section; also how many lines the daemon leaves out.
[[nodiscard]] QString Summary(const RehearsalResult& run, const PageNotes& notes);

// A section with every finding, its line, and a link to the line's first event if it has one. Empty where nothing was
// found.
[[nodiscard]] QString Section(const RehearsalResult& run, const PageNotes& notes);

} // namespace FindingsHtml

#pragma once

#include <QString>

struct PageNotes;
struct RehearsalResult;

// A rehearsal as a page for a browser: one file that needs no other, and no network.
namespace Page
{

// More than this is too much for a browser on a small computer.
inline constexpr qsizetype MOST_MB = 20;

// Throws ToolError with advice when the page would be larger than MOST_MB.
[[nodiscard]] QString Markup(const RehearsalResult& run, const PageNotes& notes);

} // namespace Page

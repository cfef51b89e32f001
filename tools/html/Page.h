#pragma once

#include <QString>

struct RehearsalResult;

// A rehearsal as a page for a browser: one file that needs no other, and no network.
namespace Page
{

// zone: the name of the time zone that the times are in.
[[nodiscard]] QString Markup(const RehearsalResult& run, const QString& zone);

} // namespace Page

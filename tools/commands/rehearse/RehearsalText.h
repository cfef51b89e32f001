#pragma once

#include <QString>

struct RehearsalResult;

// A rehearsal as text.
namespace RehearsalText
{

// For a terminal: a heading for each day, a line for each event, and below it its requests and tracks.
[[nodiscard]] QString Table(const RehearsalResult& run);

// One object: "schedule", "from", "until", "events". Moments are ISO 8601, in local time with the offset.
[[nodiscard]] QString Json(const RehearsalResult& run);

// RFC 4180: a row of names, then a row for each request, or for each event that has none.
[[nodiscard]] QString Csv(const RehearsalResult& run);

} // namespace RehearsalText

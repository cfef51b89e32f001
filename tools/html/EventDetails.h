#pragma once

#include "engine/Event.h"

#include <QString>

struct RehearsalResult;

// The details of an event, as markup: when it is, its marks and reason, from when to when it plays, its tracks, the
// schedule's line, and the requests.
namespace EventDetails
{

[[nodiscard]] QString Markup(const RehearsalResult& run, const Event& event, const QString& title);

// "from 10:00 to 10:12", "from 22:00 to Tue 26 March 01:00"; of what goes on at the end of the rehearsal, that it does.
// Empty for what is no bar.
[[nodiscard]] QString SpanText(const RehearsalResult& run, const Event& event);

// When that ends: "10:12", "Tue 26 March 01:00", "goes on". Empty for what is no bar.
[[nodiscard]] QString EndText(const RehearsalResult& run, const Event& event);

} // namespace EventDetails

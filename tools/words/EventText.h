#pragma once

#include "engine/Event.h"

#include <QString>

// Events in words, for a table or a page.
namespace EventText
{

// "late", "forced", "repeated", "by chance", "skipped", "lost", "missed", "playing" for what began before the rehearsal
// does (from_ms); several joined by ", "; empty for what comes as it is written.
[[nodiscard]] QString Mark(const Event& event, qint64 from_ms);

// That a start may be missed, and behind which line; empty where it is not at risk.
[[nodiscard]] QString Risk(const Event& event);

// That the player is told no start time; empty where it is, and where none is needed.
[[nodiscard]] QString Untimed(const Event& event);

// What is played or set, from the first request that tells: `gong.mp3 at 08:30:00`, `christmas from track 3`, `98.5
// MHz`. Empty where there is no more to say than the kind of task.
[[nodiscard]] QString Subject(const Event& event);

// The event's kind as machines read it: "start", "skipped", "lost", "missed", "followup".
[[nodiscard]] QString KindName(EventKind kind);

} // namespace EventText

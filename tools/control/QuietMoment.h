#pragma once

#include "engine/Event.h"

#include <QString>

#include <optional>
#include <vector>

// When a schedule can be replaced without anybody hearing it. Moments in milliseconds since 1970-01-01 00:00:00 UTC.
namespace QuietMoment
{

inline constexpr qint64 MARGIN_MS = 15000;  // free of starts before and after
inline constexpr qint64 MESSAGE_MS = 60000; // that a message is taken to play at least

// What keeps it waiting.
struct Reason
{
    Event event;
    qint64 until_ms; // Event::OPEN: it never ends
};

struct Result
{
    std::optional<qint64> moment_ms; // none: there is none before until_ms
    std::optional<Reason> first;     // what is under way or near at now_ms, or what leaves no moment; none: nothing
};

// The first moment from now_ms on, and before until_ms, at which nothing of running plays, and nothing of running or of
// coming starts within the margin. running, coming: what the schedule before and the one after bring about in that
// time.
[[nodiscard]] Result After(qint64 now_ms, qint64 until_ms, const std::vector<Event>& running,
                           const std::vector<Event>& coming);

} // namespace QuietMoment

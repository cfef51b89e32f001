#pragma once

#include <QString>

#include <cstdint>
#include <optional>

// Where a time of day lies on the calendar.
namespace StartMoment
{

// The moment nearest to now at which the clock on the wall shows that time, "hh:mm:ss", in ms since 1970: one that is
// past by less than half a day, or ahead by no more. The local clock counts: a time that a night has twice is the
// nearer of the two, and one that it leaves out is what the system makes of it. None for a
// text of another form.
[[nodiscard]] std::optional<std::int64_t> Nearest_ms(const QString& time, std::int64_t now_ms);

} // namespace StartMoment

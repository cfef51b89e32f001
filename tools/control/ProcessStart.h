#pragma once

#include <QtGlobal>

#include <optional>

namespace ProcessStart
{

// When the process was started, to the second, in milliseconds since 1970-01-01 00:00:00 UTC. None where the system
// does not tell.
[[nodiscard]] std::optional<qint64> Of_ms(qint64 processId);

} // namespace ProcessStart

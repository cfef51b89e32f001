#pragma once

#include "Clock.h"

#include <QString>

#include <cstdint>

struct PassedStart;

// Why a start was missed, for people.
namespace MissedCause
{

// The schedule was loaded just before.
[[nodiscard]] QString Loaded();

// What is certain goes before what is likely. loaded_ms: when the schedule was loaded, by the clock on the wall.
[[nodiscard]] QString Of(const PassedStart& start, const Clock::Reading& now, std::int64_t loaded_ms);

} // namespace MissedCause

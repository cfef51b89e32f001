#pragma once

#include "Task.h"

#include <cstdint>
#include <span>

// What the parameters of a task stand for. Which of them must be there is told by the daemon's table of kinds.
enum class ParameterRole : std::uint8_t
{
    FILE_NAME,
    PORT_AND_PATH,
    IDENTIFIER,
    PLAYER_VOLUME,
    MASTER_VOLUME,
    INTENSITY,
    FREQUENCY,
    MASK,
    SWITCH,
    CPU_FREQUENCY,
    PHOTO_INTERVAL,
    PHOTO_NUMBER,
    PDD_NUMBER,
};

namespace ParameterRoles
{

// In order; the task reads no more than these. Empty for a type that has no task.
[[nodiscard]] std::span<const ParameterRole> Of(TaskType type);

} // namespace ParameterRoles

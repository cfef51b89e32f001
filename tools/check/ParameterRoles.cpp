#include "ParameterRoles.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace
{

struct Row
{
    TaskType type;
    size_t count;
    std::array<ParameterRole, 3> roles;
};

using enum ParameterRole;

constexpr std::array TABLE{
    Row{TASK_LIGHT, 1, {INTENSITY}},
    Row{TASK_PLAY_MESSAGE, 2, {FILE_NAME, PLAYER_VOLUME}},
    Row{TASK_PLAY_PLAYLIST, 3, {FILE_NAME, PLAYER_VOLUME, IDENTIFIER}},
    Row{TASK_RECORD_PHOTO, 2, {PHOTO_INTERVAL, PHOTO_NUMBER}},
    Row{TASK_VOLUME, 1, {MASTER_VOLUME}},
    Row{TASK_PLAY_RADIO_FM, 1, {FREQUENCY}},
    Row{TASK_AMPLIFIERS, 1, {MASK}},
    Row{TASK_SET_CPU_FREQ, 1, {CPU_FREQUENCY}},
    Row{TASK_CAMERA, 1, {SWITCH}},
    Row{TASK_GPS, 1, {SWITCH}},
    Row{TASK_LAN, 1, {SWITCH}},
    Row{TASK_STOP_PLAYLIST, 1, {IDENTIFIER}},
    Row{TASK_PLAY_STREAM, 2, {PORT_AND_PATH, PLAYER_VOLUME}},
    Row{TASK_ENABLE_AUX, 1, {SWITCH}},
    Row{TASK_REQUEST_PDD_ACTION, 2, {PDD_NUMBER, SWITCH}},
};

} // namespace

std::span<const ParameterRole> ParameterRoles::Of(TaskType type)
{
    const auto* const row = std::ranges::find(TABLE, type, &Row::type);
    return row != TABLE.end() ? std::span(row->roles).first(row->count) : std::span<const ParameterRole>();
}

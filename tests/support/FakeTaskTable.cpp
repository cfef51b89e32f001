#include "FakeTask.h"
#include "TaskTable.h"

#include <algorithm>
#include <array>
#include <limits>

// Defines what the daemon's table does, so that the linker takes this one: every known kind of line makes a fake
// task, whatever the daemon's classes need for theirs.

namespace
{

constexpr int ANY = std::numeric_limits<int>::max();

template <TaskType TYPE> std::unique_ptr<Task> MakeFake(const TaskRequest& request)
{
    // Where the daemon's playlist tasks have theirs.
    const int identifierAt = TYPE == TASK_PLAY_PLAYLIST ? 2 : 0;
    const bool hasIdentifier = TYPE == TASK_PLAY_PLAYLIST || TYPE == TASK_STOP_PLAYLIST;
    return std::make_unique<FakeTask>(TYPE, hasIdentifier ? request.parameters.value(identifierAt) : QString());
}

template <TaskType TYPE> constexpr TaskKind Fake()
{
    return {TASK_NAMES[TYPE], 0, ANY, MakeFake<TYPE>};
}

constexpr std::array TABLE{
    Fake<TASK_LIGHT>(),         Fake<TASK_PLAY_MESSAGE>(),  Fake<TASK_PLAY_PLAYLIST>(), Fake<TASK_VOLUME>(),
    Fake<TASK_PLAY_RADIO_FM>(), Fake<TASK_STOP_PLAYLIST>(), Fake<TASK_STOP_MESSAGE>(),  Fake<TASK_STOP_RADIO_FM>(),
};

} // namespace

const TaskKind* TaskTable::Find(TaskType type)
{
    const auto* const row = std::ranges::find(TABLE, type, &TaskKind::type);
    return row != TABLE.end() ? row : nullptr;
}

#include "FakeTask.h"
#include "TaskTable.h"

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

template <TaskType TYPE> constexpr TaskKind Fake(const char* name)
{
    return TaskKind{TYPE, name, name, 0, ANY, MakeFake<TYPE>};
}

constexpr std::array TABLE{
    Fake<TASK_LIGHT>("Light"),
    Fake<TASK_PLAY_MESSAGE>("PlayMessage"),
    Fake<TASK_PLAY_PLAYLIST>("PlayPlaylist"),
    Fake<TASK_VOLUME>("Volume"),
    Fake<TASK_PLAY_RADIO_FM>("PlayRadioFm"),
    Fake<TASK_STOP_PLAYLIST>("StopPlaylist"),
    Fake<TASK_STOP_MESSAGE>("StopMessage"),
    Fake<TASK_STOP_RADIO_FM>("StopRadioFm"),
};

template <typename Predicate> const TaskKind* FindIf(Predicate predicate)
{
    for (const TaskKind& kind : TABLE)
    {
        if (predicate(kind))
            return &kind;
    }
    return nullptr;
}

} // namespace

const TaskKind* TaskTable::Find(TaskType type)
{
    return FindIf([type](const TaskKind& kind) { return kind.type == type; });
}

const TaskKind* TaskTable::FindByName(const QString& name)
{
    return FindIf([&name](const TaskKind& kind) { return name == QLatin1String(kind.scheduleName); });
}

#include "TaskType.h"

#include <algorithm>
#include <cstddef>

namespace
{

constexpr bool IsIndexedByType()
{
    for (std::size_t i = 0; i < TASK_NAMES.size(); ++i)
    {
        if (TASK_NAMES[i].type != static_cast<TaskType>(i))
            return false;
    }
    return true;
}

static_assert(IsIndexedByType(), "a row stands at the place of its type");

} // namespace

bool IsTaskKind(TaskType type)
{
    return type >= 0 && static_cast<std::size_t>(type) < TASK_NAMES.size();
}

TaskType TypeOfScheduleName(const QString& name)
{
    const auto* row = std::ranges::find_if(TASK_NAMES, [&name](const TaskName& kind) {
        return kind.scheduleName != nullptr && name == QLatin1String(kind.scheduleName);
    });
    return row != TASK_NAMES.end() ? row->type : TASK_UNKNOWN;
}

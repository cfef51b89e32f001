#include "ShownName.h"

#include <cstddef>

QString ShownName::Of(TaskType type, const QString& logName)
{
    const char* const name = IsTaskKind(type) ? TASK_NAMES[static_cast<std::size_t>(type)].scheduleName : nullptr;
    return name != nullptr ? QString::fromLatin1(name) : logName;
}

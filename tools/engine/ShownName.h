#pragma once

#include "TaskType.h"

#include <QString>

// How the tool calls a kind of task.
namespace ShownName
{

// The name that a schedule accepts; logName where a line asks for the kind by number only, or it is no kind.
[[nodiscard]] QString Of(TaskType type, const QString& logName);

} // namespace ShownName

#pragma once

#include "TaskType.h"

#include <QString>

// The parameters of tasks in words.
namespace ParameterNames
{

// "a file name", "1 (on) or 0 (off)": that parameter of such a task, counted from 0; "a parameter" where it reads none
// there.
[[nodiscard]] QString Of(TaskType type, int place);

} // namespace ParameterNames

#pragma once

#include "engine/ScheduleLine.h"

#include <QString>

// Why the daemon leaves a line out, in the words of a check.
namespace RejectedText
{

// "the daemon leaves the line out: task: no task is called "Light1"; did you mean Light? ...". line: is rejected.
[[nodiscard]] QString Of(ScheduleLine& line);

} // namespace RejectedText

#pragma once

#include "StatusReport.h"

#include <QString>

namespace StatusText
{

// A paragraph for people: a line each for the state, the file, what plays, what comes next, the peers and the records.
[[nodiscard]] QString Lines(const StatusReport& report);

// One object.
[[nodiscard]] QString Json(const StatusReport& report);

} // namespace StatusText

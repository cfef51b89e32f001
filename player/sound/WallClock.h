#pragma once

#include <QtGlobal>

// The clock on the wall, read finer than others need it and by any thread.
namespace WallClock
{

// Nanoseconds since 1970-01-01 00:00:00 UTC.
qint64 Now_ns();

} // namespace WallClock

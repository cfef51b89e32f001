#pragma once

class QDBusConnection;

namespace BusReading
{

// Has the bus library read from bus however much waits to be handled. Left to itself it pauses at 63 MB, and the pause
// never ends: it would have to end on the library's own thread, but is ended on the one that handles the messages, from
// where Qt cannot switch reading on again. One call of 64 MB, or some smaller ones while the loop is blocked, then left
// a process that lives but answers nobody. False when the bus library cannot be told.
[[nodiscard]] bool NeverPause(const QDBusConnection& bus);

// Waits until the event loop has all that the bus has sent before, also what it sent while the process stood still; for
// a second at most. False when the bus does not answer.
[[nodiscard]] bool CatchUp(const QDBusConnection& bus);

} // namespace BusReading

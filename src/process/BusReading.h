#pragma once

class QDBusConnection;

namespace BusReading
{

// Makes the bus library go on reading from bus, however much waits to be handled. By default it pauses at 63 MB, and
// never resumes: it resumes on the thread that handles the messages, from where Qt cannot switch reading on again. One
// call of 64 MB, or some smaller ones while the loop is blocked, would leave a process that lives but answers nobody.
// False when the library's limit cannot be set.
[[nodiscard]] bool NeverPause(const QDBusConnection& bus);

// Waits, for a second at most, until the event loop has everything that the bus has sent so far, including what it sent
// while the process stood still. False when the bus does not answer.
[[nodiscard]] bool CatchUp(const QDBusConnection& bus);

} // namespace BusReading

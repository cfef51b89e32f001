#pragma once

// Tells the service manager that the process works, so that one that hangs is started anew: systemd's watchdog. One for
// the process.
namespace Lifesign
{

// Takes from the environment where the sign is expected (NOTIFY_SOCKET, WATCHDOG_USEC, WATCHDOG_PID). Before that, and
// where no sign is expected, the others do nothing. False when one is expected and cannot be given; it is not given
// then.
[[nodiscard]] bool Open();

[[nodiscard]] bool IsExpected();

// Gives the sign. Never waits: where there is no room, others are still on their way.
void Give();

} // namespace Lifesign

#pragma once

#include <functional>
#include <vector>

// The signals that ask a process to end: SIGINT and SIGTERM.
namespace EndSignals
{

// Runs in a signal context, for any of them: calls Wake, and does nothing else that is not safe there.
using Handler = void (*)(int sig);

// Wakes the event loop, and does nothing else. Safe in a signal context.
void Wake(int sig) noexcept;

// From now on handler runs at each of these signals, and onSignal is called from the event loop after that. Gives the
// names of those that cannot be caught, which end the process as ever: all, where no descriptor is available. Once in a
// process.
[[nodiscard]] std::vector<const char*> Catch(std::function<void()> onSignal, Handler handler = Wake);

} // namespace EndSignals

#pragma once

#include <functional>

// Carries a process signal into the event loop, by way of a descriptor. One for the process.
namespace SignalPipe
{

// Calls onWake from the event loop after every Wake. False when no descriptor is available.
[[nodiscard]] bool Open(std::function<void()> onWake);

// Wakes the event loop. Safe in a signal context.
void Wake() noexcept;

} // namespace SignalPipe

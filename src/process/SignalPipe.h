#pragma once

#include <functional>

// Carries a process signal into the event loop, by way of a descriptor. One for the process.
namespace SignalPipe
{

// Has onWake called from the event loop after every Wake. False when no descriptor is to be had.
[[nodiscard]] bool Open(std::function<void()> onWake);

// Wakes the event loop. Safe in a signal context.
void Wake() noexcept;

} // namespace SignalPipe

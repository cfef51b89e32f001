#pragma once

#include <QString>

// The session bus of who runs the tool. The daemon's code, which the tool runs to see what it does, must not reach it.
namespace SessionBus
{

// Takes the bus out of the environment, and keeps its address. Called once, before anything else.
void Hide();

// The address, as the environment or the session manager has it; empty where there is none.
[[nodiscard]] QString Address();

} // namespace SessionBus

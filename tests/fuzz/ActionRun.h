#pragma once

#include "Action.h"
#include "Engine.h"

#include <memory>

// What holds of every action that a line gave, whatever the line.
namespace ActionRun
{

// Starts the action while every peer answers so, lets what it started come to its end and starts it again, and at last
// deletes it, as the schedule does.
void Check(std::unique_ptr<Action> action, Engine::Answer answer);

} // namespace ActionRun

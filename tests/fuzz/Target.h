#pragma once

#include <QByteArray>

// What a program that feeds inputs to a target knows of it; each target's source defines the two functions, in one way
// or another.
namespace Target
{

// Called once, after the application object stands and before the first input.
void SetUp();

// Handles one input, whatever it is. What is wrong goes to Findings. Leaves nothing behind that the next could see.
void Run(const QByteArray& input);

} // namespace Target

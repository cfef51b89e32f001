#pragma once

#include <QString>

// The terminal that the simulator was started on.
namespace Console
{

// Writes a line to standard output, at once.
void Line(const QString& text);

// Writes a line to standard error, with the program's name before it.
void Error(const QString& text);

} // namespace Console

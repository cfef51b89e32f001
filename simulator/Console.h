#pragma once

#include <QString>

// The terminal that the simulator was started on.
namespace Console
{

enum Colour : int
{
    RED = 31,
    GREEN = 32,
    CYAN = 36,
};

// The text in that colour, if standard output is a terminal and NO_COLOR is not set.
[[nodiscard]] QString Paint(const QString& text, Colour colour);

// Writes a line to standard output, at once.
void Line(const QString& text);

// Writes a line to standard error, with the program's name before it.
void Error(const QString& text);

} // namespace Console

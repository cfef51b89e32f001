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

// The text in that colour, where standard output is a terminal and the environment does not ask for NO_COLOR.
[[nodiscard]] QString Paint(const QString& text, Colour colour);

// Writes a line to standard output, at once.
void Line(const QString& text);

// Writes a line to standard error, with the program's name before it.
void Error(const QString& text);

} // namespace Console

#pragma once

#include <QString>

// Standard output and standard error, as the tool writes them: UTF-8, whatever the locale.
namespace Terminal
{

enum class Colour
{
    RED,
    GREEN,
    YELLOW,
    BLUE,
    GREY,
    BOLD,
};

// Writes text as it stands. Throws ToolError when it cannot be written, but for a reader that has gone.
void Print(const QString& text);

// Writes text to standard error.
void PrintError(const QString& text);

// text in that colour where standard output is a terminal that shows colours and its user wants them (NO_COLOR);
// otherwise text as it stands.
[[nodiscard]] QString Coloured(const QString& text, Colour colour);

[[nodiscard]] bool IsOutputTerminal();
[[nodiscard]] bool IsErrorTerminal();

} // namespace Terminal

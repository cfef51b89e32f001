#include "Console.h"

#include <cstdio>
#include <unistd.h>

namespace
{

constexpr const char* PROGRAM = "ozna-simulator";
constexpr const char* NO_COLOUR_VARIABLE = "NO_COLOR";

bool HasColours()
{
    static const bool HAS_COLOURS = ::isatty(STDOUT_FILENO) == 1 && qEnvironmentVariableIsEmpty(NO_COLOUR_VARIABLE);
    return HAS_COLOURS;
}

} // namespace

QString Console::Paint(const QString& text, Colour colour)
{
    return HasColours() ? QStringLiteral("\x1b[%1m%2\x1b[0m").arg(QString::number(colour), text) : text;
}

void Console::Line(const QString& text)
{
    std::puts(qPrintable(text));
    // Who reads along, reads it when it happens.
    std::fflush(stdout);
}

void Console::Error(const QString& text)
{
    std::fprintf(stderr, "%s: %s\n", PROGRAM, qPrintable(text));
}

#include "Console.h"

#include <cstdio>

namespace
{
constexpr const char* PROGRAM = "ozna-simulator";
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

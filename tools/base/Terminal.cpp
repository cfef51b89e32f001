#include "Terminal.h"

#include "ToolError.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <unistd.h>

namespace
{

constexpr const char* NO_COLOUR_VARIABLE = "NO_COLOR";
constexpr const char* TERMINAL_VARIABLE = "TERM";
constexpr const char* DUMB_TERMINAL = "dumb";

constexpr std::array CODES{"31", "32", "33", "34", "90", "1"};

bool ShowsColours()
{
    static const bool shows = Terminal::IsOutputTerminal() && qEnvironmentVariableIsEmpty(NO_COLOUR_VARIABLE) &&
                              qgetenv(TERMINAL_VARIABLE) != DUMB_TERMINAL;
    return shows;
}

bool Write(std::FILE* file, const QByteArray& bytes)
{
    return std::fwrite(bytes.constData(), 1, static_cast<size_t>(bytes.size()), file) ==
               static_cast<size_t>(bytes.size()) &&
           std::fflush(file) == 0;
}

} // namespace

void Terminal::Print(const QString& text)
{
    if (!Write(stdout, text.toUtf8()) && errno != EPIPE)
        throw ToolError(QStringLiteral("standard output: ") + QString::fromLocal8Bit(std::strerror(errno)));
}

void Terminal::PrintError(const QString& text)
{
    // There is nowhere left to tell that this failed.
    static_cast<void>(Write(stderr, text.toUtf8()));
}

QString Terminal::Coloured(const QString& text, Colour colour)
{
    if (!ShowsColours())
        return text;
    return QStringLiteral("\x1b[%1m%2\x1b[0m").arg(QLatin1String(CODES[static_cast<size_t>(colour)]), text);
}

bool Terminal::IsOutputTerminal()
{
    return ::isatty(STDOUT_FILENO) == 1;
}

bool Terminal::IsErrorTerminal()
{
    return ::isatty(STDERR_FILENO) == 1;
}

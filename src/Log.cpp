#include "Log.h"

#include "Globals.h"

#include <LogInterface.h>

#include <algorithm>
#include <array>
#include <clocale>
#include <cstdarg>
#include <cstdio>
#include <cstring>

namespace
{

bool IsContinuation(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xc0U) == 0x80U;
}

// How many bytes the UTF-8 character that begins with lead has; 1 for what begins none.
size_t CharacterLength(char lead)
{
    const auto byte = static_cast<unsigned char>(lead);
    if (byte >= 0xf0U)
        return 4;
    if (byte >= 0xe0U)
        return 3;
    return byte >= 0xc0U ? 2 : 1;
}

// The length of text without a last character that the cut left incomplete.
size_t WholeCharacters(const char* text, size_t length)
{
    size_t start = length;
    while (start > 0 && IsContinuation(text[start - 1]))
        --start;
    if (start == 0)
        return length;
    --start;
    return start + CharacterLength(text[start]) > length ? start : length;
}

// Has the thread's numbers formatted as the C locale does while this object lives: the application object takes over
// the user's locale, and a frequency must not turn into "98,50" on a device set up for Italy.
class PlainNumbers
{
public:
    PlainNumbers()
        : m_earlier(::uselocale(Locale()))
    {
    }
    ~PlainNumbers() { ::uselocale(m_earlier); }
    PlainNumbers(const PlainNumbers&) = delete;
    PlainNumbers& operator=(const PlainNumbers&) = delete;

private:
    static locale_t Locale()
    {
        static const locale_t plain = ::newlocale(LC_ALL_MASK, "C", nullptr);
        return plain;
    }

    const locale_t m_earlier;
};

} // namespace

void Log::Emit(LogLevel level, const char* origin, Site site, const char* format, ...)
{
    if (_logInterface == nullptr)
        return;

    std::array<char, RECORD_SIZE> record{};
    const int prefix = std::snprintf(record.data(), record.size(), "[%s:%d] ", site.file, site.line);
    const size_t begin = std::clamp<size_t>(static_cast<size_t>(std::max(prefix, 0)), 0, record.size() - 1);

    char* const message = record.data() + begin;
    const size_t room = record.size() - begin;
    const PlainNumbers plainNumbers;
    va_list arguments;
    va_start(arguments, format);
    const int wanted = std::vsnprintf(message, room, format, arguments);
    va_end(arguments);

    // A negative length is a text of more than two gigabytes: what fits of it is there, unterminated perhaps.
    record.back() = '\0';
    if (wanted < 0 || static_cast<size_t>(wanted) >= room)
        message[WholeCharacters(message, std::strlen(message))] = '\0';

    _logInterface->EmitLogString(level, record.data(), origin);
}

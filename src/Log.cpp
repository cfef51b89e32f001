#include "Log.h"

#include "Globals.h"
#include "PlainFormat.h"

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

struct Record
{
    std::array<char, Log::RECORD_SIZE> text;
    size_t begin; // of the message, behind "[file:line] "
};

// False where there was not room enough.
__attribute__((format(printf, 3, 0))) bool Print(char* target, size_t room, const char* format, va_list arguments)
{
    va_list same;
    va_copy(same, arguments);
    const PlainFormat::Outcome outcome = PlainFormat::Print(target, room, format, same);
    va_end(same);
    if (outcome != PlainFormat::Outcome::NOT_PLAIN)
        return outcome == PlainFormat::Outcome::WHOLE;
    const PlainNumbers plainNumbers;
    // A negative length is a text of more than two gigabytes: what fits of it is there, unterminated perhaps.
    std::fill_n(target, room, '\0');
    const int wanted = std::vsnprintf(target, room, format, arguments);
    target[room - 1] = '\0';
    return wanted >= 0 && static_cast<size_t>(wanted) < room;
}

__attribute__((format(printf, 2, 0))) Record Format(Log::Site site, const char* format, va_list arguments)
{
    Record record;
    record.begin = site.prefix.copy(record.text.data(), record.text.size() - 1);

    char* const message = record.text.data() + record.begin;
    const size_t room = record.text.size() - record.begin;
    if (!Print(message, room, format, arguments))
        message[WholeCharacters(message, std::strlen(message))] = '\0';
    return record;
}

void HandOver(LogLevel level, const char* origin, const Record& record)
{
    _logInterface->EmitLogString(level, record.text.data(), origin);
}

} // namespace

void Log::Emit(LogLevel level, const char* origin, Site site, const char* format, ...)
{
    if (_logInterface == nullptr)
        return;
    va_list arguments;
    va_start(arguments, format);
    const Record record = Format(site, format, arguments);
    va_end(arguments);
    HandOver(level, origin, record);
}

QString Log::Tell(LogLevel level, const char* origin, Site site, const char* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    const Record record = Format(site, format, arguments);
    va_end(arguments);
    if (_logInterface != nullptr)
        HandOver(level, origin, record);
    return QString::fromUtf8(record.text.data() + record.begin).trimmed();
}

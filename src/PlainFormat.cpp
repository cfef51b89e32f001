#include "PlainFormat.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>
#include <string_view>

namespace
{

// The C library writes that too.
constexpr const char* NO_TEXT = "(null)";

constexpr std::size_t MOST_DIGITS = 11; // with a sign

// The part of a buffer that is still free, but for the terminator.
class Target
{
public:
    Target(char* begin, std::size_t room)
        : m_next(begin)
        , m_free(room - 1)
    {
    }

    void Append(std::string_view text)
    {
        const std::size_t length = std::min(text.size(), m_free);
        std::memcpy(m_next, text.data(), length);
        m_next += length;
        m_free -= length;
        m_isWhole = m_isWhole && length == text.size();
    }

    // Reads no more of a text than can be told from one that just fits.
    void AppendText(const char* text)
    {
        const char* const shown = text != nullptr ? text : NO_TEXT;
        Append({shown, ::strnlen(shown, m_free + 1)});
    }

    void AppendNumber(int number)
    {
        std::array<char, MOST_DIGITS> digits;
        const auto end = std::to_chars(digits.begin(), digits.end(), number).ptr;
        Append({digits.begin(), static_cast<std::size_t>(end - digits.begin())});
    }

    PlainFormat::Outcome End()
    {
        *m_next = '\0';
        return m_isWhole ? PlainFormat::Outcome::WHOLE : PlainFormat::Outcome::CUT;
    }

private:
    char* m_next;
    std::size_t m_free;
    bool m_isWhole = true;
};

} // namespace

PlainFormat::Outcome PlainFormat::Print(char* target, std::size_t room, const char* format, va_list arguments)
{
    Target text(target, room);
    while (true)
    {
        const std::size_t length = std::strcspn(format, "%");
        text.Append({format, length});
        format += length;
        if (*format == '\0')
            return text.End();
        switch (format[1])
        {
        case 'd': text.AppendNumber(va_arg(arguments, int)); break;
        case 's': text.AppendText(va_arg(arguments, const char*)); break;
        default: return Outcome::NOT_PLAIN;
        }
        format += 2;
    }
}

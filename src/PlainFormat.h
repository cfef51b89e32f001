#pragma once

#include <cstdarg>
#include <cstddef>

// Formats what nearly every record asks for, at much less cost than the C library, which has to be ready for anything.
namespace PlainFormat
{

enum class Outcome
{
    WHOLE,
    CUT,       // target holds what there was room for
    NOT_PLAIN, // the format asks for something else; target holds no text
};

// Writes what std::vsnprintf would, if the format asks for nothing but %d and %s. room: of target, the terminator
// included; at least 1.
[[nodiscard]] Outcome Print(char* target, std::size_t room, const char* format, va_list arguments)
    __attribute__((format(printf, 3, 0)));

} // namespace PlainFormat

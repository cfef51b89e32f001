#include "LogRecord.h"

#include <algorithm>
#include <array>

namespace
{

// The journal's priorities, which are those of syslog: each holds from the one above up to that level.
struct Priority
{
    unsigned int greatestLevel;
    char digit;
};
constexpr std::array PRIORITIES{Priority{1, '3'}, Priority{2, '4'}, Priority{4, '5'}, Priority{8, '6'}};
constexpr char LEAST_PRIORITY = '7';

bool IsControl(unsigned char byte)
{
    return byte < 0x20 || byte == 0x7f;
}

// The UTF-8 form of the control characters U+0080 to U+009F, which terminals obey as well.
bool IsWideControl(std::string_view text, size_t position)
{
    constexpr unsigned char LEAD = 0xc2;
    if (static_cast<unsigned char>(text[position]) != LEAD || position + 1 == text.size())
        return false;
    const auto second = static_cast<unsigned char>(text[position + 1]);
    return second >= 0x80 && second <= 0x9f;
}

void AppendEscaped(std::string& record, unsigned char byte)
{
    switch (byte)
    {
    case '\n': record += "\\n"; break;
    case '\t': record += "\\t"; break;
    case '\r': record += "\\r"; break;
    default:
        constexpr const char* DIGITS = "0123456789abcdef";
        record += "\\x";
        record += DIGITS[byte >> 4U];
        record += DIGITS[byte & 0x0fU];
    }
}

void AppendPrintable(std::string& record, std::string_view text)
{
    for (size_t i = 0; i < text.size(); ++i)
    {
        const auto byte = static_cast<unsigned char>(text[i]);
        if (IsWideControl(text, i))
        {
            AppendEscaped(record, byte);
            AppendEscaped(record, static_cast<unsigned char>(text[++i]));
        }
        else if (IsControl(byte))
            AppendEscaped(record, byte);
        else
            record += text[i];
    }
}

std::string_view WithoutLineEnds(std::string_view text)
{
    while (text.ends_with('\n'))
        text.remove_suffix(1);
    return text;
}

char PriorityOf(unsigned int level)
{
    const auto* const found =
        std::ranges::find_if(PRIORITIES, [level](const Priority& row) { return level <= row.greatestLevel; });
    return found != PRIORITIES.end() ? found->digit : LEAST_PRIORITY;
}

void AppendField(std::string& entry, std::string_view name, std::string_view value)
{
    entry += name;
    entry += '=';
    AppendPrintable(entry, value);
    entry += '\n';
}

void AppendSite(std::string& entry, std::string_view text)
{
    const size_t end = text.find("] ");
    const size_t colon = text.rfind(':', end);
    if (!text.starts_with('[') || end == std::string_view::npos || colon == std::string_view::npos)
        return;
    const std::string_view line = text.substr(colon + 1, end - colon - 1);
    if (line.empty() || line.find_first_not_of("0123456789") != std::string_view::npos)
        return;
    AppendField(entry, "CODE_FILE", text.substr(1, colon - 1));
    AppendField(entry, "CODE_LINE", line);
}

} // namespace

std::string LogRecord::Line() const
{
    std::string line = std::to_string(level);
    line += ' ';
    AppendPrintable(line, origin);
    line += ' ';
    AppendPrintable(line, WithoutLineEnds(text));
    line += '\n';
    return line;
}

std::string LogRecord::JournalEntry(std::string_view program) const
{
    std::string entry;
    AppendField(entry, "PRIORITY", std::string(1, PriorityOf(level)));
    AppendField(entry, "SYSLOG_IDENTIFIER", program);
    AppendField(entry, "OZNA_LEVEL", std::to_string(level));
    AppendField(entry, "OZNA_ORIGIN", origin);
    AppendSite(entry, text);
    AppendField(entry, "MESSAGE", WithoutLineEnds(text));
    return entry;
}

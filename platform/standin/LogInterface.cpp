#include "LogInterface.h"

#include <QByteArray>

#include <csignal>
#include <string>
#include <string_view>
#include <unistd.h>

namespace
{

constexpr const char* LEVEL_VARIABLE = "OZNA_LOG_LEVEL";
constexpr unsigned int DEFAULT_LEVEL = 4;

unsigned int MaxLevelFromEnvironment()
{
    bool ok = false;
    const unsigned int level = qgetenv(LEVEL_VARIABLE).toUInt(&ok);
    return ok ? level : DEFAULT_LEVEL;
}

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

} // namespace

LogInterface::LogInterface(const QString& objectPath)
    : m_maxLevel(MaxLevelFromEnvironment())
{
    // Standard error needs no address; the path is the device library's.
    Q_UNUSED(objectPath)
    // A reader of the log that goes away must not end the process that writes it.
    std::signal(SIGPIPE, SIG_IGN);
}

LogInterface::~LogInterface() = default;

void LogInterface::EmitLogString(unsigned int level, const char* text, const char* origin)
{
    if (level > m_maxLevel)
        return;

    std::string_view body(text);
    while (body.ends_with('\n'))
        body.remove_suffix(1);

    std::string record = std::to_string(level);
    record += ' ';
    AppendPrintable(record, origin);
    record += ' ';
    AppendPrintable(record, body);
    record += '\n';

    // One write a record, so that records of several processes never mix. A log that takes nothing
    // (a full disk, a pipe without a reader) has nowhere to report it to.
    [[maybe_unused]] const ssize_t written = ::write(STDERR_FILENO, record.data(), record.size());
}

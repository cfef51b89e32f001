#include "LogInterface.h"

#include "LogOutput.h"

#include <QByteArray>

#include <csignal>
#include <string>
#include <string_view>
#include <unistd.h>

namespace
{

constexpr const char* LEVEL_VARIABLE = "OZNA_LOG_LEVEL";
constexpr unsigned int DEFAULT_LEVEL = 4;

// The record that tells of lost ones.
constexpr unsigned int LOST_LEVEL = 2;
constexpr const char* LOST_ORIGIN = "/com/kestrelix/ozna/scheduler/schedulerobj"; // that of nearly every record

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

// One line, whatever the text holds: what is no record cannot look like one.
std::string Record(unsigned int level, std::string_view text, std::string_view origin)
{
    while (text.ends_with('\n'))
        text.remove_suffix(1);

    std::string record = std::to_string(level);
    record += ' ';
    AppendPrintable(record, origin);
    record += ' ';
    AppendPrintable(record, text);
    record += '\n';
    return record;
}

std::string LossRecord(unsigned int lost)
{
    const std::string site = std::string("[") + __FILE__ + ':' + std::to_string(__LINE__) + "] ";
    return Record(LOST_LEVEL, site + "Log records lost: " + std::to_string(lost), LOST_ORIGIN);
}

} // namespace

LogInterface::LogInterface(const QString& objectPath)
    : m_maxLevel(MaxLevelFromEnvironment())
    , m_output(std::make_shared<LogOutput>(STDERR_FILENO, [maxLevel = m_maxLevel](unsigned int lost) {
        return LOST_LEVEL <= maxLevel ? LossRecord(lost) : std::string();
    }))
{
    // Standard error needs no address; the path is the device library's.
    Q_UNUSED(objectPath)
    // A reader of the log that goes away must not end the process that writes it.
    std::signal(SIGPIPE, SIG_IGN);
}

LogInterface::~LogInterface() = default;

void LogInterface::EmitLogString(unsigned int level, const char* text, const char* origin)
{
    // One write a record, so that records of several processes never mix.
    if (level <= m_maxLevel)
        m_output->Write(Record(level, text, origin));
}

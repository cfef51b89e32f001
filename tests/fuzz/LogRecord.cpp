#include "Findings.h"
#include "Globals.h"
#include "Log.h"
#include "Target.h"

#include <LogInterface.h>

#include <QByteArrayList>

#include <unistd.h>

#include <algorithm>

// A text of any origin on its way to standard error: cut by the daemon, written by the stand-in for the device's log
// client. Input: the text.

ssize_t RealWrite(int descriptor, const void* bytes, size_t size) __asm__("__real_write");
ssize_t Write(int descriptor, const void* bytes, size_t size) __asm__("__wrap_write");

namespace
{

constexpr const char* PREFIX = "4 /com/kestrelix/ozna/scheduler/schedulerobj [LogRecord.cpp:7] ";
constexpr const char* RECORD_PREFIX = "[LogRecord.cpp:7] ";
constexpr Log::Site SITE{"[LogRecord.cpp:7] "};

bool m_isTaken = false; // whether what is written is kept
QByteArrayList m_written;

bool IsControl(char byte)
{
    return (byte >= 0 && byte < ' ') || byte == '\x7f';
}

// What the stand-in makes of a text without its trailing newlines, byte by byte; the control characters of two bytes
// excepted.
QByteArray Escaped(const QByteArray& text)
{
    QByteArray escaped;
    for (const char byte : text)
    {
        if (!IsControl(byte))
            escaped += byte;
        else if (byte == '\n')
            escaped += "\\n";
        else if (byte == '\t')
            escaped += "\\t";
        else if (byte == '\r')
            escaped += "\\r";
        else
            escaped += "\\x" + QByteArray(1, byte).toHex();
    }
    return escaped;
}

bool IsAscii(const QByteArray& text)
{
    return std::all_of(text.begin(), text.end(), [](char byte) { return byte >= 0; });
}

template <typename Emit> QByteArray Written(Emit emit)
{
    m_written.clear();
    m_isTaken = true;
    emit();
    m_isTaken = false;
    EXPECT_THAT(m_written.size() == 1, "one write a record, not " + QByteArray::number(m_written.size()));
    return m_written.value(0);
}

void CheckLine(const QByteArray& line, const QByteArray& text)
{
    EXPECT_THAT(line.startsWith(PREFIX), line);
    EXPECT_THAT(line.endsWith('\n') && line.count('\n') == 1, line);
    EXPECT_THAT(std::none_of(line.begin(), line.end() - 1, IsControl), line);
    // Terminals obey the control characters beyond ASCII as well.
    const QString shown = QString::fromUtf8(line).chopped(1);
    EXPECT_THAT(std::none_of(shown.begin(), shown.end(), [](QChar c) { return c.category() == QChar::Other_Control; }),
                line);
    // Where the text was none, nobody expects it to become one.
    if (QString::fromUtf8(text).toUtf8() == text)
        EXPECT_THAT(QString::fromUtf8(line).toUtf8() == line, line);
}

} // namespace

ssize_t Write(int descriptor, const void* bytes, size_t size)
{
    // Standard error may have been opened once more, to be written without waiting.
    if (!m_isTaken)
        return RealWrite(descriptor, bytes, size);
    m_written.append(QByteArray(static_cast<const char*>(bytes), static_cast<qsizetype>(size)));
    return static_cast<ssize_t>(size);
}

void Target::SetUp()
{
    qputenv("OZNA_LOG_LEVEL", "9");
    _logInterface = new LogInterface(QString());
}

void Target::Run(const QByteArray& input)
{
    // A text ends at its NUL.
    const QByteArray text(input.constData());
    const QByteArray line = Written([&text] { Log::Emit(LEVEL_NORMAL, Log::ORIGIN, SITE, "%s", text.constData()); });
    CheckLine(line, text);
    EXPECT_THAT(line == Written([&text] { Log::Emit(LEVEL_NORMAL, Log::ORIGIN, SITE, "%s", text.constData()); }), line);

    // What is cut is at most a character more than what there is no room for.
    const auto room = static_cast<qsizetype>(Log::RECORD_SIZE - 1 - qstrlen(RECORD_PREFIX));
    QByteArray kept = text.left(room);
    if (!IsAscii(text))
        return;
    while (kept.endsWith('\n'))
        kept.chop(1);
    EXPECT_THAT(line == PREFIX + Escaped(kept) + '\n', line);

    const QByteArray number =
        Written([&text] { Log::Emit(LEVEL_NORMAL, Log::ORIGIN, SITE, "%d|%.2f|%s", 7, 98.5, text.constData()); });
    CheckLine(number, text);
    EXPECT_THAT(number.startsWith(QByteArray(PREFIX) + "7|98.50|"), number);
}

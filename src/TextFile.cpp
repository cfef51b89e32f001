#include "TextFile.h"

#include <algorithm>
#include <fcntl.h>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace
{

constexpr qint64 BLOCK_SIZE = 65536;
constexpr qint64 LEAST_READ = 1048576; // a file that grows is read up to here in any case
constexpr QChar LINE_FEED = u'\n';
constexpr QChar CARRIAGE_RETURN = u'\r';

bool IsTerminator(QChar character)
{
    return character == LINE_FEED || character == CARRIAGE_RETURN;
}

bool IsVisible(QChar character)
{
    return std::u16string_view(u" \n\r\t").find(character.unicode()) == std::u16string_view::npos;
}

bool IsRegular(const struct stat& status)
{
    return S_ISREG(status.st_mode);
}

// False when there is no such file. A name with a NUL names none: the system would look at another file.
bool Look(const QByteArray& name, struct stat& status)
{
    return !name.contains('\0') && ::stat(name.constData(), &status) == 0;
}

// Opens a regular file and nothing else; -1 when it cannot be opened.
int OpenRegular(const QByteArray& name)
{
    struct stat status
    {
    };
    // Looking before opening spares devices the side effects that an open may have.
    if (!Look(name, status) || !IsRegular(status))
        return -1;

    const int descriptor = ::open(name.constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    // The name may have come to mean another file since; the descriptor cannot.
    if (descriptor < 0 || (::fstat(descriptor, &status) == 0 && IsRegular(status)))
        return descriptor;

    ::close(descriptor);
    return -1;
}

} // namespace

TextFile::TextFile(const QString& path)
    : m_path(path)
{
}

bool TextFile::Open()
{
    const int descriptor = OpenRegular(QFile::encodeName(m_path));
    if (descriptor < 0)
        return false;
    if (!m_file.open(descriptor, QIODevice::ReadOnly | QIODevice::Unbuffered, QFileDevice::AutoCloseHandle))
    {
        ::close(descriptor);
        return false;
    }
    // Some files of the system are longer than the size that they show.
    m_unread = std::max(m_file.size(), LEAST_READ);
    return true;
}

bool TextFile::ReadLine(QString& line)
{
    line.resize(0);
    bool isLine = false;
    while (m_position < m_block.size() || ReadBlock())
    {
        if (std::exchange(m_afterReturn, false) && m_block[m_position] == LINE_FEED)
        {
            ++m_position;
            continue;
        }
        const auto begin = m_block.cbegin() + m_position;
        const auto end = std::find_if(begin, m_block.cend(), IsTerminator);
        line.append(&*begin, end - begin);
        isLine = true;
        m_position = end - m_block.cbegin();
        if (end == m_block.cend())
            continue;
        ++m_position;
        m_afterReturn = *end == CARRIAGE_RETURN;
        break;
    }
    if (isLine)
        ++m_lineNumber;
    return isLine;
}

// Reads on until there is text, which the first bytes of a character alone are not. False when there is no more.
bool TextFile::ReadBlock()
{
    m_position = 0;
    do
    {
        const QByteArray bytes = m_file.read(std::min(m_unread, BLOCK_SIZE));
        if (bytes.isEmpty())
        {
            m_block.clear();
            return false;
        }
        m_unread -= bytes.size();
        if (!m_decoder.isValid())
            m_decoder = QStringDecoder(QStringConverter::encodingForData(bytes).value_or(QStringConverter::Utf8));
        m_block = m_decoder(bytes);
    } while (m_block.isEmpty());
    return true;
}

bool TextFile::Exists() const
{
    struct stat status
    {
    };
    return Look(QFile::encodeName(m_path), status);
}

QString TextFile::ReadError() const
{
    return m_file.error() == QFileDevice::NoError ? QString() : m_file.errorString();
}

bool TextFile::IsBlankOrComment(QStringView line)
{
    const auto last = std::find_if(line.crbegin(), line.crend(), IsVisible);
    return last == line.crend() || std::find(line.cbegin(), last.base(), COMMENT_SIGN) < last.base() - 1;
}

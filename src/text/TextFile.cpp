#include "TextFile.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <fcntl.h>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

constexpr qint64 BLOCK_SIZE = 16384;
constexpr qint64 LEAST_READ = 1048576; // a file that grows is read up to here in any case
constexpr QChar LINE_FEED = u'\n';
constexpr QChar CARRIAGE_RETURN = u'\r';

bool IsVisible(QChar character)
{
    return std::u16string_view(u" \n\r\t").find(character.unicode()) == std::u16string_view::npos;
}

// What the system has no error for.
constexpr int NOT_REGULAR = -1;
const QString NOT_REGULAR_TEXT = QStringLiteral("Not a regular file");

// Why something of that kind is not opened; 0 for a regular file.
int KindError(const struct stat& status)
{
    if (S_ISREG(status.st_mode))
        return 0;
    return S_ISDIR(status.st_mode) ? EISDIR : NOT_REGULAR;
}

// False, with errno set, when it fails. A name with a NUL names nothing: the system would look at another file.
bool Look(const QByteArray& name, struct stat& status)
{
    if (!name.contains('\0'))
        return ::stat(name.constData(), &status) == 0;
    errno = EINVAL;
    return false;
}

struct Opening
{
    int descriptor = -1; // where there is no error
    int error = 0;
};

// Opens a regular file and nothing else.
Opening OpenRegular(const QByteArray& name)
{
    struct stat status
    {
    };
    if (!Look(name, status))
        return {.error = errno};
    // Looking before opening spares devices the side effects that an open may have.
    if (const int error = KindError(status); error != 0)
        return {.error = error};

    const int descriptor = ::open(name.constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (descriptor < 0)
        return {.error = errno};
    // The name may have come to mean another file since; the descriptor cannot.
    const int error = ::fstat(descriptor, &status) == 0 ? KindError(status) : errno;
    if (error == 0)
        return {.descriptor = descriptor};
    ::close(descriptor);
    return {.error = error};
}

// That a file does not exist is no reason worth telling.
QString ReasonOf(int error)
{
    if (error == NOT_REGULAR)
        return NOT_REGULAR_TEXT;
    return error == ENOENT ? QString() : qt_error_string(error);
}

} // namespace

TextFile::TextFile(const QString& path)
    : m_path(path)
{
}

bool TextFile::Open()
{
    const Opening opening = OpenRegular(QFile::encodeName(m_path));
    if (opening.error != 0)
    {
        m_openError = ReasonOf(opening.error);
        return false;
    }
    if (!m_file.open(opening.descriptor, QIODevice::ReadOnly | QIODevice::Unbuffered, QFileDevice::AutoCloseHandle))
    {
        m_openError = m_file.errorString();
        ::close(opening.descriptor);
        return false;
    }
    // Some system files (/proc) have more content than their size says.
    m_unread = std::max(m_file.size(), LEAST_READ);
    return true;
}

bool TextFile::ReadLine(QString& line)
{
    line.resize(0);
    bool isLine = false;
    bool hasEnd = false;
    while (!hasEnd && (m_position < m_block.size() || ReadBlock()))
    {
        const auto begin = m_block.cbegin() + m_position;
        const auto end = std::find(begin, m_block.cend(), LINE_FEED);
        line.append(&*begin, end - begin);
        isLine = true;
        hasEnd = end != m_block.cend();
        m_position = end - m_block.cbegin() + (hasEnd ? 1 : 0);
    }
    if (!isLine)
        return false;
    if (hasEnd && line.endsWith(CARRIAGE_RETURN))
        line.chop(1);
    m_hasLineEnd = hasEnd;
    m_hasLoneReturn = line.contains(CARRIAGE_RETURN);
    if (m_hasLoneReturn)
        line.remove(CARRIAGE_RETURN);
    ++m_lineNumber;
    return true;
}

// Reads on until there is text, which the first bytes of a character alone are not. False when there is no more.
bool TextFile::ReadBlock()
{
    m_position = 0;
    std::array<char, BLOCK_SIZE> block;
    do
    {
        const qint64 size = m_file.read(block.data(), std::min(m_unread, BLOCK_SIZE));
        if (size <= 0)
        {
            m_block.clear();
            return false;
        }
        const QByteArrayView bytes(block.data(), static_cast<qsizetype>(size));
        m_unread -= size;
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

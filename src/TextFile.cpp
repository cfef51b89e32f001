#include "TextFile.h"

#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

bool IsRegular(const struct stat& status)
{
    return S_ISREG(status.st_mode);
}

// Opens a regular file and nothing else; -1 when it cannot be opened.
int OpenRegular(const QByteArray& name)
{
    struct stat status
    {
    };
    // A name with a NUL would open another file than the one it names. Looking before opening
    // spares devices the side effects that an open may have.
    if (name.contains('\0') || ::stat(name.constData(), &status) != 0 || !IsRegular(status))
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
    if (!m_file.open(descriptor, QIODevice::ReadOnly | QIODevice::Text, QFileDevice::AutoCloseHandle))
    {
        ::close(descriptor);
        return false;
    }
    m_stream.setDevice(&m_file);
    return true;
}

QString TextFile::ReadError() const
{
    return m_file.error() == QFileDevice::NoError ? QString() : m_file.errorString();
}

bool TextFile::IsBlankOrComment(const QString& line)
{
    const std::string text = line.toLatin1().toStdString();
    const size_t last = text.find_last_not_of(" \n\r\t");
    return last == std::string::npos || text.find('#') < last;
}

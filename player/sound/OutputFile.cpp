#include "sound/OutputFile.h"

#include <QFile>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <stdexcept>

namespace
{

constexpr mode_t MODE = 0644;

[[noreturn]] void Refuse(const QByteArray& path, const char* reason)
{
    throw std::runtime_error(path.toStdString() + ": " + reason);
}

} // namespace

int OutputFile::Open(const QString& path, Begin begin)
{
    const QByteArray name = QFile::encodeName(path);
    // Without the flag, opening a pipe would wait for its reader.
    const int flags = O_WRONLY | O_CREAT | O_NONBLOCK | O_CLOEXEC | (begin == Begin::ANEW ? O_TRUNC : O_APPEND);
    const int file = open(name.constData(), flags, MODE);
    if (file < 0)
        Refuse(name, errno == ENXIO ? "nobody reads this pipe" : std::strerror(errno));
    struct stat status = {};
    if (fstat(file, &status) != 0 || !(S_ISREG(status.st_mode) || S_ISFIFO(status.st_mode)) ||
        std::signal(SIGPIPE, SIG_IGN) == SIG_ERR)
    {
        close(file);
        Refuse(name, "it is neither a file nor a pipe");
    }
    return file;
}

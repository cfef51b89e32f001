#include "SoundFile.h"

#include <QFile>

#include <fcntl.h>
#include <sndfile.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <vector>

namespace
{

constexpr sf_count_t BLOCK = 4096; // frames: of any kind of file more than one of its packets

// The library of mp3 files tells on standard error what it finds, without the name of the file.
class QuietErrors final
{
public:
    QuietErrors()
        : m_before(::fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 0))
    {
        const int nothing = m_before < 0 ? -1 : ::open("/dev/null", O_WRONLY | O_CLOEXEC);
        Put(nothing);
        if (nothing >= 0)
            ::close(nothing);
    }
    ~QuietErrors()
    {
        Put(m_before);
        if (m_before >= 0)
            ::close(m_before);
    }

    QuietErrors(const QuietErrors&) = delete;
    QuietErrors& operator=(const QuietErrors&) = delete;

private:
    // Where that fails the errors stay visible, which is no harm.
    static void Put(int descriptor)
    {
        static_cast<void>(std::fflush(stderr));
        if (descriptor >= 0)
            static_cast<void>(::dup2(descriptor, STDERR_FILENO));
    }

    const int m_before;
};

struct Closer
{
    void operator()(SNDFILE* file) const { static_cast<void>(::sf_close(file)); }
};

// Whether the library can decode something there.
bool HasSound(SNDFILE* file, sf_count_t first, int channels)
{
    std::vector<float> frames(static_cast<size_t>(BLOCK) * static_cast<size_t>(channels));
    return ::sf_seek(file, first, SEEK_SET) == first && ::sf_readf_float(file, frames.data(), BLOCK) > 0;
}

} // namespace

bool SoundFile::IsSupported()
{
    return true;
}

SoundFile SoundFile::Read(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {0, file.errorString()};
    const QuietErrors quiet;
    SF_INFO info{};
    // By the descriptor the library judges what is in the file: by the name it would take any text for a sound.
    const std::unique_ptr<SNDFILE, Closer> sound(::sf_open_fd(file.handle(), SFM_READ, &info, SF_FALSE));
    if (!sound)
        return {0, QString::fromLocal8Bit(::sf_strerror(nullptr))};
    if (info.frames <= 0 || info.samplerate <= 0)
        return {0, QStringLiteral("it has no sound")};
    // A file that was cut may still tell its whole length.
    if (!HasSound(sound.get(), 0, info.channels) ||
        !HasSound(sound.get(), std::max<sf_count_t>(info.frames - BLOCK, 0), info.channels))
        return {0, QStringLiteral("it is damaged, or cut")};
    return {static_cast<double>(info.frames) / info.samplerate, {}};
}

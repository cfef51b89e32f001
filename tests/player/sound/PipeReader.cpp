#include "PipeReader.h"

#include <QFile>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>

namespace
{

constexpr mode_t MODE = 0600;
constexpr std::size_t SIZE = 65536;

} // namespace

PipeReader::PipeReader(const QString& path)
    : m_path(QFile::encodeName(path))
{
    if (mkfifo(m_path.constData(), MODE) != 0)
        qFatal("no pipe can be made");
}

PipeReader::~PipeReader()
{
    Close();
}

bool PipeReader::Open()
{
    m_file = open(m_path.constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (m_file < 0)
        return false;
    m_notifier = std::make_unique<QSocketNotifier>(m_file, QSocketNotifier::Read);
    QObject::connect(m_notifier.get(), &QSocketNotifier::activated, [this] { Take(); });
    return true;
}

void PipeReader::Close()
{
    Stall();
    if (m_file >= 0)
        close(m_file);
    m_file = -1;
}

void PipeReader::Stall()
{
    m_notifier.reset();
}

void PipeReader::Take()
{
    std::array<char, SIZE> bytes;
    const ssize_t size = read(m_file, bytes.data(), bytes.size());
    if (size > 0)
        m_read.append(bytes.data(), size);
    // The writer has gone; another may come.
    else if (size == 0)
        Stall();
}

bool PipeReader::HasHeard()
{
    const QByteArrayView fresh = QByteArrayView(m_read).sliced(m_looked);
    m_looked = m_read.size();
    return fresh.size() > std::count(fresh.begin(), fresh.end(), '\0');
}

qint64 PipeReader::Heard() const
{
    constexpr qsizetype FRAME_SIZE = 4;
    qint64 heard = 0;
    for (qsizetype at = 0; at + FRAME_SIZE <= m_read.size(); at += FRAME_SIZE)
        heard += QByteArrayView(m_read).sliced(at, FRAME_SIZE) == QByteArrayView("\0\0\0\0", FRAME_SIZE) ? 0 : 1;
    return heard;
}

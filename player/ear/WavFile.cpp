#include "WavFile.h"

#include <QDataStream>
#include <QFile>

QString WavFile::Write(const QString& path, std::span<const Pcm::Sample> samples)
{
    constexpr quint16 FORM_PCM = 1;
    constexpr quint32 FORM_SIZE = 16;
    constexpr quint32 SIZE_BEHIND_SIZE = 36; // the header's bytes behind the first size
    constexpr quint16 FRAME_SIZE = Pcm::CHANNELS * sizeof(Pcm::Sample);
    constexpr quint16 BITS = 8 * sizeof(Pcm::Sample);

    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return file.errorString();
    QDataStream stream(&file);
    stream.setByteOrder(QDataStream::LittleEndian);
    const auto size = static_cast<quint32>(samples.size_bytes());
    stream.writeRawData("RIFF", 4);
    stream << quint32{SIZE_BEHIND_SIZE + size};
    stream.writeRawData("WAVEfmt ", 8);
    stream << FORM_SIZE << FORM_PCM << quint16{Pcm::CHANNELS} << quint32{Pcm::RATE} << quint32{Pcm::RATE * FRAME_SIZE}
           << FRAME_SIZE << BITS;
    stream.writeRawData("data", 4);
    stream << size;
    for (const Pcm::Sample sample : samples)
        stream << sample;
    return stream.status() == QDataStream::Ok && file.flush() ? QString() : file.errorString();
}

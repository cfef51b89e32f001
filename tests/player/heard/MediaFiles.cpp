#include "MediaFiles.h"

#include "ear/WavFile.h"

#include <QFile>
#include <QFileInfo>
#include <QHash>

#include <sndfile.h>

using namespace Qt::StringLiterals;

namespace
{

constexpr int WAVE_FRAMES = 96; // 500 Hz

const QHash<QString, int>& Forms()
{
    static const QHash<QString, int> forms{
        {u"flac"_s, SF_FORMAT_FLAC | SF_FORMAT_PCM_16},
        {u"ogg"_s, SF_FORMAT_OGG | SF_FORMAT_VORBIS},
        {u"opus"_s, SF_FORMAT_OGG | SF_FORMAT_OPUS},
        {u"mp3"_s, SF_FORMAT_MPEG | SF_FORMAT_MPEG_LAYER_III},
    };
    return forms;
}

} // namespace

std::vector<Pcm::Sample> MediaFiles::Block(qint64 frames, double peak)
{
    const auto loud = static_cast<Pcm::Sample>(peak * Pcm::FULL_SCALE);
    std::vector<Pcm::Sample> samples;
    samples.reserve(static_cast<size_t>(frames * Pcm::CHANNELS));
    for (qint64 frame = 0; frame < frames; ++frame)
    {
        const bool isUpper = frame % WAVE_FRAMES < WAVE_FRAMES / 2;
        samples.insert(samples.end(), Pcm::CHANNELS, isUpper ? loud : static_cast<Pcm::Sample>(-loud));
    }
    return samples;
}

void MediaFiles::Write(const QString& path, const std::vector<Pcm::Sample>& samples, int rate)
{
    const QString suffix = QFileInfo(path).suffix();
    if (suffix == u"wav")
    {
        if (const QString error = WavFile::Write(path, samples); !error.isEmpty())
            qFatal("cannot write %s: %s", qPrintable(path), qPrintable(error));
        return;
    }
    SF_INFO info{};
    info.samplerate = rate;
    info.channels = Pcm::CHANNELS;
    info.format = Forms().value(suffix);
    SNDFILE* const file = sf_open(QFile::encodeName(path).constData(), SFM_WRITE, &info);
    const auto frames = static_cast<sf_count_t>(samples.size() / Pcm::CHANNELS);
    if (!file || sf_writef_short(file, samples.data(), frames) != frames || sf_close(file) != 0)
        qFatal("cannot write %s: %s", qPrintable(path), sf_strerror(file));
}

#include "Recording.h"

#include <QFile>
#include <QtEndian>

#include <algorithm>
#include <cmath>

namespace
{

constexpr qsizetype FRAME_SIZE = 4;
// A decoder may leave the last bit to chance.
constexpr int SILENT = 8;
constexpr double FULL_SCALE = 32768;

} // namespace

Recording::Recording(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return;
    const QByteArray bytes = file.readAll();
    for (qsizetype at = 0; at + FRAME_SIZE <= bytes.size(); at += FRAME_SIZE)
        m_levels.push_back(qFromLittleEndian<qint16>(bytes.constData() + at));
}

double Recording::Level(qint64 frame) const
{
    return m_levels[static_cast<std::size_t>(frame)] / FULL_SCALE;
}

QList<Recording::Sound> Recording::Sounds(qint64 apart) const
{
    QList<Sound> sounds;
    for (qint64 frame = 0; frame < Length(); ++frame)
    {
        if (std::abs(m_levels[static_cast<std::size_t>(frame)]) < SILENT)
            continue;
        if (sounds.isEmpty() || frame - sounds.last().end >= apart)
            sounds.append({frame, frame + 1});
        else
            sounds.last().end = frame + 1;
    }
    return sounds;
}

double Recording::Peak(qint64 begin, qint64 end) const
{
    double peak = 0;
    for (qint64 frame = std::max<qint64>(begin, 0); frame < std::min(end, Length()); ++frame)
        peak = std::max(peak, std::abs(Level(frame)));
    return peak;
}

qint64 Recording::LongestSilence(qint64 begin, qint64 end) const
{
    qint64 longest = 0;
    qint64 run = 0;
    for (qint64 frame = std::max<qint64>(begin, 0); frame < std::min(end, Length()); ++frame)
    {
        run = std::abs(m_levels[static_cast<std::size_t>(frame)]) < SILENT ? run + 1 : 0;
        longest = std::max(longest, run);
    }
    return longest;
}

double Recording::GreatestStep(qint64 begin, qint64 end) const
{
    double step = 0;
    for (qint64 frame = std::max<qint64>(begin, 1); frame < std::min(end, Length()); ++frame)
        step = std::max(step, std::abs(Level(frame) - Level(frame - 1)));
    return step;
}

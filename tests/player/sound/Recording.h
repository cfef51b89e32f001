#pragma once

#include <QList>
#include <QString>

#include <vector>

// What an output has written, read back: 48,000 frames a second of two channels.
class Recording final
{
public:
    // A file that cannot be read is an empty recording.
    explicit Recording(const QString& path);

    struct Sound
    {
        qint64 begin; // the first frame that is not silent
        qint64 end;   // the frame behind the last
    };
    // The sounds in it. Two of them are apart when at least that many silent frames lie between them.
    [[nodiscard]] QList<Sound> Sounds(qint64 apart) const;

    // The greatest level of the frames, 0 to 1.
    [[nodiscard]] double Peak(qint64 begin, qint64 end) const;
    [[nodiscard]] double Peak() const { return Peak(0, Length()); }
    // The longest run of silent frames among those.
    [[nodiscard]] qint64 LongestSilence(qint64 begin, qint64 end) const;
    // The greatest step between two frames that follow each other, 0 to 2.
    [[nodiscard]] double GreatestStep(qint64 begin, qint64 end) const;
    [[nodiscard]] qint64 Length() const { return static_cast<qint64>(m_levels.size()); }

private:
    [[nodiscard]] double Level(qint64 frame) const;

    std::vector<qint16> m_levels; // of the left channel
};

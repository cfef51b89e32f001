#include "SoundTest.h"

#include "Log.h"
#include "sound/WallClock.h"

#include <QDataStream>
#include <QFile>

#include <cmath>
#include <numbers>

namespace
{

constexpr int TONE_HZ = 1000;
constexpr qint16 CHANNELS = 1;
constexpr qint16 BITS = 16;
constexpr quint32 HEADER_SIZE = 36;
constexpr quint32 FORMAT_SIZE = 16;

} // namespace

QString SoundTest::Tone(const QString& name, qint64 frames, double level, int rate)
{
    QFile file(Path(name));
    if (!file.open(QIODevice::WriteOnly))
        qFatal("no file for a tone");
    QDataStream stream(&file);
    stream.setByteOrder(QDataStream::LittleEndian);
    const auto size = static_cast<quint32>(frames * BITS / 8);
    stream.writeRawData("RIFF", 4);
    stream << HEADER_SIZE + size;
    stream.writeRawData("WAVEfmt ", 8);
    stream << FORMAT_SIZE << qint16(1) << CHANNELS << rate << rate * BITS / 8 << qint16(BITS / 8) << BITS;
    stream.writeRawData("data", 4);
    stream << size;
    for (qint64 frame = 0; frame < frames; ++frame)
    {
        const double angle = 2 * std::numbers::pi * TONE_HZ * static_cast<double>(frame) / rate;
        stream << static_cast<qint16>(std::lround(32767 * level * std::cos(angle)));
    }
    return file.fileName();
}

void SoundTest::Begin(SoundSettings settings)
{
    if (settings.output == SoundSettings().output)
        settings.output = QStringLiteral("file:") + OutputPath();
    m_told.clear();
    m_maker = std::make_unique<GstSoundMaker>(settings);
    connect(m_maker.get(), &SoundMaker::Ready, this, [this](SoundMaker::Id id) { m_told[id].isReady = true; });
    connect(m_maker.get(), &SoundMaker::Started, this,
            [this](SoundMaker::Id id, qint64 heard_ms) { m_told[id].heard_ms = heard_ms; });
    connect(m_maker.get(), &SoundMaker::Skipped, this,
            [this](SoundMaker::Id id, const QString& source, const QString& reason) {
                m_told[id].skipped.append(source.section(QLatin1Char('/'), -1) + QStringLiteral(": ") + reason);
            });
    connect(m_maker.get(), &SoundMaker::Ended, this, [this](SoundMaker::Id id, const QString& reason) {
        m_told[id].ended = reason;
        ++m_told[id].ends;
        m_told[id].ended_ms = Now_ms();
    });
}

Recording SoundTest::End()
{
    m_maker.reset();
    return Recording(OutputPath());
}

SoundMaker::Id SoundTest::Play(const Piece& piece)
{
    return m_maker->Play(piece);
}

SoundMaker::Id SoundTest::PlayMessage(const QString& path, std::optional<qint64> due_ms, double volume)
{
    return Play({Piece::Place::MESSAGE, {path}, due_ms, 0, volume});
}

SoundMaker::Id SoundTest::PlayList(const QStringList& paths, qint64 gap_ms, std::optional<qint64> due_ms)
{
    return Play({Piece::Place::PLAYLIST, paths, due_ms, gap_ms, 100});
}

qint64 SoundTest::Now_ms()
{
    return WallClock::Now_ns() / 1'000'000;
}

void SoundTest::init()
{
    LogRecorder::Install();
    LogRecorder::Clear();
    m_folder.emplace();
    Begin();
}

void SoundTest::cleanup()
{
    m_maker.reset();
    m_folder.reset();
    EXPECT_LOG(LEVEL_WARNING, {});
}

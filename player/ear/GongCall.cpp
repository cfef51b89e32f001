#include "GongCall.h"

#include "Clock.h"
#include "Gong.h"
#include "WavFile.h"

#include <QEventLoop>
#include <QTimer>

namespace
{

constexpr qint64 AHEAD_MS = 3000;   // opens the output, and prepares the gong
constexpr int PATIENCE_MS = 10'000; // beyond its moment

} // namespace

GongCall::GongCall(SoundMaker& sound, qint64 length_ms)
    : m_sound(sound)
    , m_file(m_folder.filePath(QStringLiteral("gong.wav")))
    , m_error(WavFile::Write(m_file, Gong::Samples(length_ms)))
{
}

qint64 GongCall::NextMoment_ms(qint64 step_ms)
{
    return (Clock::Read().calendar_ms + AHEAD_MS + step_ms - 1) / step_ms * step_ms;
}

GongCall::Outcome GongCall::Play(qint64 due_ms)
{
    Outcome outcome;
    if (!m_error.isEmpty())
    {
        outcome.reason = QStringLiteral("can't write %1: %2").arg(m_file, m_error);
        return outcome;
    }
    SoundMaker::Id own = 0;
    bool isOver = false;
    QEventLoop loop;
    const QObject context;
    QObject::connect(&m_sound, &SoundMaker::Started, &context, [&](SoundMaker::Id id, qint64 heard_ms) {
        if (id == own)
            outcome.heard_ms = heard_ms;
    });
    QObject::connect(&m_sound, &SoundMaker::Ended, &context, [&](SoundMaker::Id id, const QString& reason) {
        if (id != own)
            return;
        outcome.reason = reason;
        isOver = true;
        loop.quit();
    });
    QTimer::singleShot(static_cast<int>(due_ms - Clock::Read().calendar_ms) + PATIENCE_MS, &context, [&] {
        outcome.reason = QStringLiteral("it did not end within %1 s").arg(PATIENCE_MS / 1000);
        m_sound.Stop(own);
        isOver = true;
        loop.quit();
    });
    Piece piece;
    piece.place = Piece::Place::MESSAGE;
    piece.sources = {m_file};
    piece.due_ms = due_ms;
    own = m_sound.Play(piece);
    loop.exec();
    // A signal ends the process, and with it every loop that runs.
    outcome.isInterrupted = !isOver;
    if (outcome.isInterrupted)
        outcome.reason = QStringLiteral("interrupted");
    else if (outcome.reason.isEmpty() && !outcome.heard_ms)
        outcome.reason = QStringLiteral("it ended without a sound");
    return outcome;
}

#pragma once

#include "Answer.h"
#include "LivePiece.h"
#include "Means.h"

#include <QObject>
#include <QString>

#include <optional>

// Plays one stream at a time. Each request that was accepted ends with one Enabled(false).
class StreamPlayer final : public QObject
{
    Q_OBJECT
public:
    explicit StreamPlayer(const Means& means);
    ~StreamPlayer() override;
    Q_DISABLE_COPY_MOVE(StreamPlayer)

    // Answers at once: whether the server can be reached shows later. The one that plays ends first, before the answer,
    // so that nobody takes its end for that of the new one. Where it is the same address only the request before ends,
    // and the sound goes on without a gap: a schedule names one stream in many lines, and people would hear each of
    // them.
    void Play(const QString& address, const Answer& answer);

    void Stop() { m_live.Stop(); }

Q_SIGNALS:
    // True with its first sound, and again behind the answer to whoever asks for it while it is heard. False at its
    // end, and where another request takes it over.
    void Enabled(bool enabled);

private:
    void GoOn(const QString& address, std::optional<double> volume, const Answer& answer);

    const Means m_means;
    LivePiece m_live;
};

#pragma once

#include "Answer.h"
#include "Means.h"
#include "SoundMaker.h"

#include <QObject>
#include <QString>

// Plays one stream at a time. Each one that is accepted ends with one Enabled(false).
class StreamPlayer final : public QObject
{
    Q_OBJECT
public:
    explicit StreamPlayer(const Means& means);
    ~StreamPlayer() override;
    Q_DISABLE_COPY_MOVE(StreamPlayer)

    // Answers at once: whether the server can be reached shows later. The one that plays ends first, before the answer,
    // so that nobody takes its end for that of the new one.
    void Play(const QString& address, const Answer& answer);

    void Stop();

Q_SIGNALS:
    // With its first sound, and at its end.
    void Enabled(bool enabled);

private:
    void OnSound(SoundMaker::Id id);
    void OnEnded(SoundMaker::Id id, const QString& reason);
    void Finish();

    static constexpr SoundMaker::Id NONE = 0;

    const Means m_means;
    SoundMaker::Id m_id = NONE;
    QString m_address;
    bool m_isHeard = false;
};

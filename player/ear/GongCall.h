#pragma once

#include "SoundMaker.h"

#include <QTemporaryDir>

#include <optional>

// Plays gongs, each at its moment, as messages are played.
class GongCall final : public QObject
{
    Q_OBJECT
public:
    // sound outlives this object. length_ms: of each gong.
    GongCall(SoundMaker& sound, qint64 length_ms);

    struct Outcome
    {
        std::optional<qint64> heard_ms; // when it began by the output's clock, since 1970
        QString reason;                 // in words, when it was not heard to its end
        bool isInterrupted = false;     // the process was asked to end before that; reason says so too
    };

    // Waits in the event loop until it has ended, or until the process is told to leave the loop.
    [[nodiscard]] Outcome Play(qint64 due_ms);

    // The next moment that is a whole multiple of step_ms, and far enough ahead to prepare a gong.
    [[nodiscard]] static qint64 NextMoment_ms(qint64 step_ms);

private:
    SoundMaker& m_sound;
    QTemporaryDir m_folder;
    const QString m_file;
    QString m_error; // why there is no file
};

#pragma once

#include "SoundMaker.h"

#include <QObject>
#include <QTimer>

#include <functional>

// How long there has been no output that takes sound, and for whom that is too long. One that opens anew and takes
// nothing is still absent: else it would hold for ever what waits for it.
class OutputAbsence final : public QObject
{
    Q_OBJECT
public:
    // mixed: how many frames were mixed so far.
    explicit OutputAbsence(std::function<qint64()> mixed);

    // The output is gone, or cannot be opened. An absence that goes on is the same one.
    void Begin();
    // It has been opened. The absence ends when it has taken a second of sound.
    void Return();
    // Nobody waits for it.
    void End();

    // hasBegun: some of the piece was mixed.
    [[nodiscard]] bool IsTooLong(const Piece& piece, bool hasBegun, qint64 now_ms) const;

Q_SIGNALS:
    // Once a second, when those for whom it is too long are to be ended.
    void Lasts();

private:
    void Count();

    const std::function<qint64()> m_mixed;
    QTimer m_timer;
    bool m_isOpen = false;
    int m_absent_s = 0;
    int m_open_s = 0;
    qint64 m_mixedBefore = 0; // when it was opened
};

#pragma once

#include "SoundMaker.h"

#include <QList>
#include <QStringList>

// Takes the place of the sound: keeps what it is asked for, and lets a test say what becomes of it.
class FakeSoundMaker final : public SoundMaker
{
    Q_OBJECT
public:
    [[nodiscard]] Id Play(const Piece& piece) override;
    void Stop(Id id) override;
    void SetVolume(Id id, double volume) override;
    void SetMasterVolume(double volume) override { m_master = volume; }

    // The pieces in the order in which they were asked for: the first has the number 1.
    [[nodiscard]] const QList<Piece>& Pieces() const { return m_pieces; }
    [[nodiscard]] double Master() const { return m_master; }

    // "stop 1", "volume 2 40", since the last call of this.
    [[nodiscard]] QStringList TakeCalls() { return std::exchange(m_calls, {}); }

    [[nodiscard]] bool IsStopped(Id id) const { return m_stopped.contains(id); }

    // From now on, what is asked for is ready at once.
    void BeReady() { m_isReady = true; }

private:
    QList<Piece> m_pieces;
    QStringList m_calls;
    QList<Id> m_stopped;
    double m_master = -1;
    bool m_isReady = false;
};

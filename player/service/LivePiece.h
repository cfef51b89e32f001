#pragma once

#include "SoundMaker.h"

#include <QObject>
#include <QString>

// One live piece at a time at one place of the mixer: a stream, or a radio's station. Follows it to its end, and logs
// what becomes of it.
class LivePiece final : public QObject
{
    Q_OBJECT
public:
    // maker: outlives this object.
    LivePiece(SoundMaker& maker, Piece::Place place);
    ~LivePiece() override;
    Q_DISABLE_COPY_MOVE(LivePiece)

    // Whether that one plays, connects or is tried again: it has not ended.
    [[nodiscard]] bool Plays(const QString& address) const { return m_id != NONE && m_address == address; }
    // Whether the one that plays was heard.
    [[nodiscard]] bool IsHeard() const { return m_id != NONE && m_isHeard; }

    // The one that plays is stopped first. volume: 0 to 100 percent.
    void Play(const QString& address, double volume);

    // Nothing happens where none plays, here and below.
    void SetVolume(double volume);
    void Stop();

Q_SIGNALS:
    // With its first sound, once.
    void Heard();
    // Once for each that was played, however it ended.
    void Ended();

private:
    void OnSound(SoundMaker::Id id);
    void OnEnded(SoundMaker::Id id, const QString& reason);
    void Finish();

    static constexpr SoundMaker::Id NONE = 0;

    SoundMaker& m_maker;
    const Piece::Place m_place;
    SoundMaker::Id m_id = NONE;
    QString m_address;
    bool m_isHeard = false;
};

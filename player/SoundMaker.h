#pragma once

#include <QObject>
#include <QString>
#include <QStringList>

#include <optional>

// What is to be heard: one file, the tracks of a playlist, or something live.
struct Piece
{
    // The places of the mixer. Each plays one piece at a time: a new one takes the place over when it begins to sound.
    enum class Place
    {
        MESSAGE,
        PLAYLIST,
        STREAM,
        RADIO,
        AUX,
    };

    Place place = Place::MESSAGE;
    // Absolute paths of files, one after the other, for a message and a playlist. The other places have one, and use no
    // other: the address of a stream, or a capture device.
    QStringList sources;
    // The moment on the wall clock at which the first sample is heard, in ms since 1970; at once without it, or when it
    // has passed. The clock may be set between the request and that moment: what it shows then counts.
    std::optional<qint64> due_ms;
    // Silence between two tracks, 0 to LONGEST_GAP_MS; what is beyond is taken for that.
    static constexpr qint64 LONGEST_GAP_MS = 3'600'000;
    qint64 gap_ms = 0;
    double volume = 100; // percent of full scale, 0 to 100
};

// Makes the sound that the service asks for. Nothing here waits: answers are signals, never emitted from within the
// call that they answer. The service knows no more of sound than this.
class SoundMaker : public QObject
{
    Q_OBJECT
public:
    using Id = quint64;

    // Begins to prepare a piece, and gives it a number that is never used again. Never 0.
    [[nodiscard]] virtual Id Play(const Piece& piece) = 0;

    // Ends a piece with a short fade, whatever it is doing; Ended follows. Nothing happens when it has ended.
    virtual void Stop(Id id) = 0;

    // 0 to 100 percent, of a piece that plays or waits.
    virtual void SetVolume(Id id, double volume) = 0;
    virtual void SetMasterVolume(double volume) = 0;

Q_SIGNALS:
    // The piece can be heard at its moment: its beginning is decoded and held. Streams are ready with their first
    // sound. Comes once, or never when the piece ends before. It may take any time: who asks stops what takes too long.
    void Ready(SoundMaker::Id id);
    // It begins to sound; heard_ms on the wall clock, rounded. Comes once, or never when it ends before it is heard.
    void Started(SoundMaker::Id id, qint64 heard_ms);
    // A part of the piece was left out: a track that cannot be played.
    void Skipped(SoundMaker::Id id, const QString& source, const QString& reason);
    // The last of each piece, exactly once, whatever happens. reason is empty when it played to its end or was stopped
    // or replaced, else it says in words what is wrong.
    void Ended(SoundMaker::Id id, const QString& reason);
    // The output lets nothing through any more for this process; another one may have it. What is asked for ends as
    // ever, with a reason.
    void Stuck(const QString& reason);
};

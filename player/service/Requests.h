#pragma once

#include "Answer.h"
#include "SoundMaker.h"

#include <QObject>
#include <QString>

#include <list>
#include <optional>

// The requests of one source: what plays, and what waits for its moment. Each is answered once its sound is ready or
// has failed, and each that was accepted ends with one Completed, which never comes ahead of its answer.
class Requests final : public QObject
{
    Q_OBJECT
public:
    // What is not ready by then is refused, and stopped: whoever asks has a clear answer within 2 s, whatever hangs.
    // This is the only limit for an answer. It is the service's, because the promise is, and holds for whatever makes
    // the sound. An output gets 1.8 s to open, and tells in words why it did not: so this is a little more.
    static constexpr int ANSWERED_WITHIN_MS = 1900;

    struct Request
    {
        QString name;                    // by which its end is told
        QString identifier;              // of a playlist
        std::optional<qint64> moment_ms; // that was asked for, though it may have passed
        std::optional<double> volume;    // of its own

        // Asked for twice, it is one request: who has lost sight of it asks again.
        [[nodiscard]] bool IsSame(const Request& other) const
        {
            return moment_ms && moment_ms == other.moment_ms && name == other.name && identifier == other.identifier;
        }
    };

    // maker: outlives this object.
    explicit Requests(SoundMaker& maker);
    ~Requests() override;
    Q_DISABLE_COPY_MOVE(Requests)

    // Where the same request waits or plays, it is that one, which takes the volume over. Otherwise the piece is
    // prepared.
    void Play(const Request& request, const Piece& piece, Answer answer);

    // Has the first of those that play or wait answer for this request as well, as soon as it is answered itself. False
    // where there is none.
    [[nodiscard]] bool Join(const Answer& answer);

    // Ends what plays or waits, or what of it has that identifier. Its Completed comes at once; what is not answered
    // yet is refused.
    void Stop(const std::optional<QString>& identifier = {});

    // The process ends: ends all in that way.
    void End();

    // For what plays, and for what waits without a volume of its own.
    void SetVolume(double volume);

Q_SIGNALS:
    void Completed(const QString& name);

private:
    struct Entry
    {
        SoundMaker::Id id;
        Piece piece;
        Request request;
        std::list<Answer> answers; // that wait
        bool isAccepted = false;
        bool isHeard = false;
    };
    using Entries = std::list<Entry>;

    [[nodiscard]] Entries::iterator Find(SoundMaker::Id id);
    void AnswerAll(Entry& entry, Status status);
    void Accept(SoundMaker::Id id);
    void Finish(Entries::iterator entry, Status refusal);
    template <typename Matches> void FinishWhere(Status refusal, Matches matches);

    void OnStarted(SoundMaker::Id id, qint64 heard_ms);
    void OnSkipped(SoundMaker::Id id, const QString& source, const QString& reason);
    void OnEnded(SoundMaker::Id id, const QString& reason);
    void OnPatienceEnded(SoundMaker::Id id);

    SoundMaker& m_maker;
    Entries m_entries;
};

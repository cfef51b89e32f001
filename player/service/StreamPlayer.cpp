#include "StreamPlayer.h"

#include "Address.h"
#include "PlayerLog.h"
#include "RequestVolumes.h"
#include "text/Printable.h"

StreamPlayer::StreamPlayer(const Means& means)
    : m_means(means)
    , m_live(means.maker, Piece::Place::STREAM)
{
    connect(&m_live, &LivePiece::Heard, this, [this] { Q_EMIT Enabled(true); });
    connect(&m_live, &LivePiece::Ended, this, [this] { Q_EMIT Enabled(false); });
    connect(&means.volumes, &RequestVolumes::Changed, this, [this](Piece::Place changed, double volume) {
        if (changed == Piece::Place::STREAM)
            m_live.SetVolume(volume);
    });
}

StreamPlayer::~StreamPlayer() = default;

void StreamPlayer::Play(const QString& address, const Answer& answer)
{
    const std::optional<double> volume = m_means.volumes.Take(Piece::Place::STREAM);
    if (!Address::IsStream(address))
    {
        PLAYER_LOG(LEVEL_ERROR, "\"%s\" is no address of a stream",
                   Printable(QStringView(address).left(Log::RECORD_SIZE)).Text());
        return answer(Status::BAD_ARGUMENT);
    }
    if (m_live.Plays(address))
        return GoOn(address, volume, answer);
    m_live.Play(address, volume.value_or(m_means.volumes.Of(Piece::Place::STREAM)));
    answer(Status::ACCEPTED);
}

void StreamPlayer::GoOn(const QString& address, std::optional<double> volume, const Answer& answer)
{
    PLAYER_LOG(LEVEL_NORMAL, "ASKED FOR AGAIN | stream: %s", Printable(address).Text());
    if (volume)
        m_live.SetVolume(*volume);
    // What was asked for before ends with this, or its line in the schedule would not be due again.
    Q_EMIT Enabled(false);
    answer(Status::ACCEPTED);
    // Whoever asks now may wait for it, and has not heard of it yet.
    if (m_live.IsHeard())
        Q_EMIT Enabled(true);
}

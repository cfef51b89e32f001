#include "StreamPlayer.h"

#include "Address.h"
#include "PlayerLog.h"
#include "RequestVolumes.h"
#include "text/Printable.h"

StreamPlayer::StreamPlayer(const Means& means)
    : m_means(means)
{
    connect(&means.maker, &SoundMaker::Ready, this, &StreamPlayer::OnSound);
    connect(&means.maker, &SoundMaker::Started, this, &StreamPlayer::OnSound);
    connect(&means.maker, &SoundMaker::Ended, this, &StreamPlayer::OnEnded);
    connect(&means.volumes, &RequestVolumes::Changed, this, [this](Piece::Place changed, double volume) {
        if (changed == Piece::Place::STREAM && m_id != NONE)
            m_means.maker.SetVolume(m_id, volume);
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
    Stop();
    Piece piece;
    piece.place = Piece::Place::STREAM;
    piece.sources = QStringList(address);
    piece.volume = volume.value_or(m_means.volumes.Of(Piece::Place::STREAM));
    m_id = m_means.maker.Play(piece);
    m_address = address;
    m_isHeard = false;
    PLAYER_LOG(LEVEL_NORMAL, "ASKED FOR | stream: %s", Printable(address).Text());
    answer(Status::ACCEPTED);
}

void StreamPlayer::Stop()
{
    if (m_id == NONE)
        return;
    PLAYER_LOG(LEVEL_NORMAL, "STOPPED | stream: %s", Printable(m_address).Text());
    m_means.maker.Stop(m_id);
    Finish();
}

void StreamPlayer::OnSound(SoundMaker::Id id)
{
    if (id != m_id || m_isHeard)
        return;
    m_isHeard = true;
    PLAYER_LOG(LEVEL_NORMAL, "STARTED | stream: %s", Printable(m_address).Text());
    Q_EMIT Enabled(true);
}

void StreamPlayer::OnEnded(SoundMaker::Id id, const QString& reason)
{
    if (id != m_id)
        return;
    if (reason.isEmpty())
        PLAYER_LOG(LEVEL_NORMAL, "ENDED | stream: %s", Printable(m_address).Text());
    else
        PLAYER_LOG(LEVEL_ERROR, "ENDED | stream: %s: %s", Printable(m_address).Text(), Printable(reason).Text());
    Finish();
}

void StreamPlayer::Finish()
{
    m_id = NONE;
    Q_EMIT Enabled(false);
}

#include "LivePiece.h"

#include "PlayerLog.h"
#include "Sources.h"
#include "text/Printable.h"

LivePiece::LivePiece(SoundMaker& maker, Piece::Place place)
    : m_maker(maker)
    , m_place(place)
{
    connect(&maker, &SoundMaker::Ready, this, &LivePiece::OnSound);
    connect(&maker, &SoundMaker::Started, this, &LivePiece::OnSound);
    connect(&maker, &SoundMaker::Ended, this, &LivePiece::OnEnded);
}

LivePiece::~LivePiece() = default;

void LivePiece::Play(const QString& address, double volume)
{
    Stop();
    Piece piece;
    piece.place = m_place;
    piece.sources = QStringList(address);
    piece.volume = volume;
    m_id = m_maker.Play(piece);
    m_address = address;
    m_isHeard = false;
    PLAYER_LOG(LEVEL_NORMAL, "ASKED FOR | %s: %s", SourceAt(m_place).name, Printable(address).Text());
}

void LivePiece::SetVolume(double volume)
{
    if (m_id != NONE)
        m_maker.SetVolume(m_id, volume);
}

void LivePiece::Stop()
{
    if (m_id == NONE)
        return;
    PLAYER_LOG(LEVEL_NORMAL, "STOPPED | %s: %s", SourceAt(m_place).name, Printable(m_address).Text());
    m_maker.Stop(m_id);
    Finish();
}

void LivePiece::OnSound(SoundMaker::Id id)
{
    if (id != m_id || m_isHeard)
        return;
    m_isHeard = true;
    PLAYER_LOG(LEVEL_NORMAL, "STARTED | %s: %s", SourceAt(m_place).name, Printable(m_address).Text());
    Q_EMIT Heard();
}

void LivePiece::OnEnded(SoundMaker::Id id, const QString& reason)
{
    if (id != m_id)
        return;
    const char* const source = SourceAt(m_place).name;
    if (reason.isEmpty())
        PLAYER_LOG(LEVEL_NORMAL, "ENDED | %s: %s", source, Printable(m_address).Text());
    else
        PLAYER_LOG(LEVEL_ERROR, "ENDED | %s: %s: %s", source, Printable(m_address).Text(), Printable(reason).Text());
    Finish();
}

void LivePiece::Finish()
{
    m_id = NONE;
    Q_EMIT Ended();
}

#include "RadioPlayer.h"

#include "PlayerLog.h"
#include "PlayerSettings.h"
#include "text/Printable.h"

RadioPlayer::RadioPlayer(const Means& means)
    : m_means(means)
{
    connect(&means.maker, &SoundMaker::Started, this, &RadioPlayer::OnStarted);
    connect(&means.maker, &SoundMaker::Ended, this, &RadioPlayer::OnEnded);
}

RadioPlayer::~RadioPlayer() = default;

Status RadioPlayer::SwitchOn()
{
    if (m_means.settings.stations.isEmpty())
    {
        PLAYER_LOG(LEVEL_ERROR, "No radio station is set up: [PLAYER] has no key such as Radio98.5");
        return Status::NOT_SET_UP;
    }
    m_isOn = true;
    Play();
    return Status::ACCEPTED;
}

Status RadioPlayer::Tune(double frequency_MHz)
{
    const PlayerSettings::Station* const station = m_means.settings.StationAt(frequency_MHz);
    if (station == nullptr)
    {
        PLAYER_LOG(LEVEL_ERROR, "No radio station is set up at %.2f MHz", frequency_MHz);
        m_address.clear();
        Silence();
        return Status::NOT_SET_UP;
    }
    m_address = station->address;
    Play();
    return Status::ACCEPTED;
}

void RadioPlayer::SwitchOff()
{
    m_isOn = false;
    m_address.clear();
    Silence();
}

void RadioPlayer::Play()
{
    if (!m_isOn || m_address.isEmpty() || (m_id != NONE && m_playing == m_address))
        return;
    // Also where the new one cannot be had: nobody wants to hear the old one any more.
    Silence();
    Piece piece;
    piece.place = Piece::Place::RADIO;
    piece.sources = QStringList(m_address);
    m_id = m_means.maker.Play(piece);
    m_playing = m_address;
    PLAYER_LOG(LEVEL_NORMAL, "ASKED FOR | radiofm: %s", Printable(m_address).Text());
}

void RadioPlayer::Silence()
{
    if (m_id == NONE)
        return;
    PLAYER_LOG(LEVEL_NORMAL, "STOPPED | radiofm: %s", Printable(m_playing).Text());
    m_means.maker.Stop(m_id);
    m_id = NONE;
}

void RadioPlayer::OnStarted(SoundMaker::Id id)
{
    if (id == m_id)
        PLAYER_LOG(LEVEL_NORMAL, "STARTED | radiofm: %s", Printable(m_playing).Text());
}

void RadioPlayer::OnEnded(SoundMaker::Id id, const QString& reason)
{
    if (id != m_id)
        return;
    PLAYER_LOG(reason.isEmpty() ? LEVEL_NORMAL : LEVEL_ERROR, "ENDED | radiofm: %s%s%s", Printable(m_playing).Text(),
               reason.isEmpty() ? "" : ": ", Printable(reason).Text());
    m_id = NONE;
}

#include "RadioPlayer.h"

#include "PlayerLog.h"
#include "PlayerSettings.h"
#include "Volumes.h"

RadioPlayer::RadioPlayer(const Means& means)
    : m_means(means)
    , m_live(means.maker, Piece::Place::RADIO)
{
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
        m_live.Stop();
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
    m_live.Stop();
}

void RadioPlayer::Play()
{
    // The one that plays is stopped also where the new one cannot be had: nobody wants to hear it any more.
    if (m_isOn && !m_address.isEmpty() && !m_live.Plays(m_address))
        m_live.Play(m_address, Volumes::FULL);
}

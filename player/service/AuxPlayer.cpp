#include "AuxPlayer.h"

#include "PlayerLog.h"
#include "PlayerSettings.h"

AuxPlayer::AuxPlayer(const Means& means)
    : TimedPlayer(means, Piece::Place::AUX)
{
}

AuxPlayer::~AuxPlayer() = default;

void AuxPlayer::Play(const Answer& answer)
{
    const QString& device = m_means.settings.aux;
    if (device.isEmpty())
    {
        PLAYER_LOG(LEVEL_ERROR, "No auxiliary input is set up: [PLAYER] has no key Aux");
        return answer(Status::NOT_SET_UP);
    }
    if (!m_requests.Join(answer))
        TimedPlayer::Play(Begin(device, {}, {}), {device}, answer);
}

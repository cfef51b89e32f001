#pragma once

#include "TimedPlayer.h"

// Plays what comes in at the capture device of the settings.
class AuxPlayer final : public TimedPlayer
{
    Q_OBJECT
public:
    explicit AuxPlayer(const Means& means);
    ~AuxPlayer() override;

    // NOT_SET_UP, and a record, where the settings name no device. What plays already goes on.
    void Play(const Answer& answer);

    void Stop() { m_requests.Stop(); }
};

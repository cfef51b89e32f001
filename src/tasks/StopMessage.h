#pragma once

#include "StopTask.h"

// Stops the message that is playing.
class StopMessage final : public StopTask
{
    Q_OBJECT
public:
    StopMessage();
    bool Run() override;
};

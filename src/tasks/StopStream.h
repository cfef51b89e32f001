#pragma once

#include "StopTask.h"

// Stops the stream that is playing.
class StopStream final : public StopTask
{
    Q_OBJECT
public:
    StopStream();
    bool Run() override;
};

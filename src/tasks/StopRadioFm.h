#pragma once

#include "StopTask.h"

// Switches the FM radio off.
class StopRadioFm final : public StopTask
{
    Q_OBJECT
public:
    StopRadioFm();
    bool Run() override;
};

#pragma once

#include "PunctualTask.h"

// Switches the amplifier outputs of a mask on, and all others off.
class Amplifiers final : public PunctualTask
{
public:
    explicit Amplifiers(const QString& mask);
    bool Run() override;

private:
    const int m_mask; // its low byte is sent, the whole of it is logged
};

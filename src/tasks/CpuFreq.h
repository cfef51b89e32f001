#pragma once

#include "PunctualTask.h"

// Asks for one fixed processor frequency: whatever the parameter says, by requirement.
class CpuFreq final : public PunctualTask
{
public:
    static constexpr int FREQUENCY_MHZ = 456;

    explicit CpuFreq(const QString& frequency);
    bool Run() override;

private:
    const int m_freqMHz;
};

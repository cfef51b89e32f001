#pragma once

#include "PunctualTask.h"

// Asks for one fixed processor frequency: whatever the parameter says, by requirement.
class CpuFreq final : public PunctualTask
{
public:
    explicit CpuFreq(const QString& frequency);
    bool Run() override;

private:
    const int m_freqMHz;
};

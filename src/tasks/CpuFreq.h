#pragma once

#include "PunctualTask.h"

// Asks for the processor frequency of normal work, whatever the parameter says: the only one that the device runs at
// reliably.
class CpuFreq final : public PunctualTask
{
public:
    explicit CpuFreq(const QString& frequency);
    bool Run() override;

private:
    const int m_freqMHz;
};

#pragma once

#include "PunctualTask.h"

// Switches the GPS receiver on or off.
class Gps final : public PunctualTask
{
public:
    explicit Gps(const QString& enable);
    bool Run() override;

private:
    const bool m_enabled;
};

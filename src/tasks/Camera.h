#pragma once

#include "PunctualTask.h"

// Switches the camera on or off.
class Camera final : public PunctualTask
{
public:
    explicit Camera(const QString& enable);
    bool Run() override;

private:
    const bool m_enable;
};

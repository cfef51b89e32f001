#pragma once

#include "PunctualTask.h"

// Sets the light's intensity and switches it on, or switches it off for the intensity 0.
class Light final : public PunctualTask
{
public:
    explicit Light(const QString& intensity);
    bool Run() override;

private:
    const int m_intensity; // as the line gives it, negative too
};

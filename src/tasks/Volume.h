#pragma once

#include "PunctualTask.h"

// Sets the master volume; its range is the sound manager's business.
class Volume final : public PunctualTask
{
public:
    explicit Volume(const QString& volume);
    bool Run() override;

private:
    const int m_volume;
};

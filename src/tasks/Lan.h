#pragma once

#include "PunctualTask.h"

// Switches the wired network on, with an address from DHCP, or off.
class Lan final : public PunctualTask
{
    Q_OBJECT
public:
    explicit Lan(const QString& enable);
    bool Run() override;

private:
    const bool m_enabled;
};

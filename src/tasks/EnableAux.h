#pragma once

#include "PunctualTask.h"

// Switches the auxiliary audio input on or off.
class EnableAux final : public PunctualTask
{
    Q_OBJECT
public:
    explicit EnableAux(const QString& enable);

    // Switches the input off when the task switched it on and is marked as running; Run itself does not mark it.
    ~EnableAux() override;

    bool Run() override;

private:
    bool RunOn() const;
    bool RunOff() const;

    const bool m_enable;
};

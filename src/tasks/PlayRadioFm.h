#pragma once

#include "PunctualTask.h"

// Switches the FM radio on and tunes it, or switches it off for the frequency 0.
class PlayRadioFm final : public PunctualTask
{
    Q_OBJECT
public:
    // frequency: in MHz.
    explicit PlayRadioFm(const QString& frequency);

    // Switches the radio off when the task is marked as running; Run itself does not mark it.
    ~PlayRadioFm() override;

    // Switching on may take the sound manager up to 20 s. A radio that is on but not tuned counts as accepted.
    bool Run() override;

    // Tunes the radio, which is on already; true when the sound manager accepted.
    bool SetFrequency() const;

private:
    bool RunStop() const;

    const double m_frequencyMHz;
};

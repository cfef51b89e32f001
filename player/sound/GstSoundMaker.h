#pragma once

#include "SoundMaker.h"
#include "SoundSettings.h"

// Makes sound with GStreamer.
class GstSoundMaker final : public SoundMaker
{
    Q_OBJECT
public:
    explicit GstSoundMaker(SoundSettings settings);
    ~GstSoundMaker() override;
    Q_DISABLE_COPY_MOVE(GstSoundMaker)

    [[nodiscard]] Id Play(const Piece& piece) override;
    void Stop(Id id) override;
    void SetVolume(Id id, double volume) override;
    void SetMasterVolume(double volume) override;

private:
    SoundSettings m_settings;
    Id m_last = 0;
};

#pragma once

#include "StopTask.h"

// Stops the playlist that plays under an identifier.
class StopPlaylist final : public StopTask
{
    Q_OBJECT
public:
    explicit StopPlaylist(const QString& identifier);
    bool Run() override;
};

#pragma once

#include "Log.h"
#include "peers/SoundManager.h"

// The one way the player logs a line.
#define PLAYER_LOG(level, ...) OZNA_LOG_FROM(SoundManager::PATH, level, __VA_ARGS__)
